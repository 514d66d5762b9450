// The values of a ValueIndex in the order of their texts, so that those with a common beginning stand side by
// side. A few bytes a value: a sorted list, cut into pieces that are short enough to be moved. One thread at
// a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace slp {

class ValueOrder {
 public:
  /// The text of a value, which stays as it is while the value is in here.
  using TextOf = std::function<std::string_view(std::uint32_t value)>;

  explicit ValueOrder(TextOf text_of);

  /// The value is not in here.
  void Insert(std::uint32_t value);

  /// The value is in here.
  void Erase(std::uint32_t value);

  /// Shows the values whose texts are not before `from`, in order, until `visit` returns false. Nothing may
  /// be inserted or erased meanwhile.
  void VisitFrom(std::string_view from,
                 const std::function<bool(std::uint32_t value, std::string_view text)>& visit) const;

  /// How many pieces there are.
  std::size_t pieces() const { return pieces_.size(); }

 private:
  using Piece = std::vector<std::uint32_t>;

  /// A piece has become short: joins it with one beside it, if the two are not long together.
  void Join(std::size_t index);

  /// Equal texts are in the order of their values, so that each has one place.
  bool IsBefore(std::uint32_t one, std::uint32_t other) const;

  /// The piece that `value` belongs into; there is one.
  std::size_t PieceFor(std::uint32_t value) const;

  TextOf text_of_;
  std::vector<Piece> pieces_;  ///< none is empty
};

}  // namespace slp
