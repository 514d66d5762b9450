#include "slpd/registry/value_order.h"

#include <algorithm>
#include <utility>

namespace slp {
namespace {

/// A piece that grows beyond it is cut in two.
constexpr std::size_t kLongestPiece = 512;

/// One that shrinks below it is joined with one beside it, unless that makes one so long that it would soon
/// be cut again.
constexpr std::size_t kShortPiece = kLongestPiece / 4;
constexpr std::size_t kLongestJoined = kLongestPiece / 4 * 3;

}  // namespace

ValueOrder::ValueOrder(TextOf text_of) : text_of_(std::move(text_of)) {}

void ValueOrder::Insert(std::uint32_t value) {
  if (pieces_.empty()) {
    pieces_.push_back({value});
    return;
  }
  const std::size_t index = PieceFor(value);
  Piece& piece = pieces_[index];
  piece.insert(
      std::upper_bound(piece.begin(), piece.end(), value,
                       [this](std::uint32_t one, std::uint32_t other) { return IsBefore(one, other); }),
      value);
  if (piece.size() > kLongestPiece) {
    // Values often come in rising order: then the first half stays as it is, and takes no more room than
    // that.
    const auto middle = piece.begin() + static_cast<std::ptrdiff_t>(piece.size() / 2);
    Piece second(middle, piece.end());
    pieces_[index] = Piece(piece.begin(), middle);
    pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(index) + 1, std::move(second));
  }
}

void ValueOrder::Erase(std::uint32_t value) {
  const std::size_t index = PieceFor(value);
  Piece& piece = pieces_[index];
  piece.erase(
      std::lower_bound(piece.begin(), piece.end(), value,
                       [this](std::uint32_t one, std::uint32_t other) { return IsBefore(one, other); }));
  if (piece.empty()) {
    pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(index));
  } else if (piece.size() < kShortPiece) {
    Join(index);
  }
}

// A new piece rather than a longer one, so that it takes only the room that it needs.
void ValueOrder::Join(std::size_t index) {
  for (const std::size_t first : {index, index == 0 ? pieces_.size() : index - 1}) {
    if (first + 1 < pieces_.size() && pieces_[first].size() + pieces_[first + 1].size() <= kLongestJoined) {
      const Piece& second = pieces_[first + 1];
      Piece joined;
      joined.reserve(pieces_[first].size() + second.size());
      joined = pieces_[first];
      joined.insert(joined.end(), second.begin(), second.end());
      pieces_[first] = std::move(joined);
      pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(first) + 1);
      return;
    }
  }
}

void ValueOrder::VisitFrom(
    std::string_view from,
    const std::function<bool(std::uint32_t value, std::string_view text)>& visit) const {
  const auto is_before = [this](std::uint32_t value, std::string_view text) {
    return text_of_(value) < text;
  };
  auto piece = std::partition_point(pieces_.begin(), pieces_.end(),
                                    [&](const Piece& other) { return is_before(other.back(), from); });
  if (piece == pieces_.end()) {
    return;
  }
  auto value = std::lower_bound(piece->begin(), piece->end(), from, is_before);
  while (visit(*value, text_of_(*value))) {
    if (++value == piece->end()) {
      if (++piece == pieces_.end()) {
        return;
      }
      value = piece->begin();
    }
  }
}

bool ValueOrder::IsBefore(std::uint32_t one, std::uint32_t other) const {
  const int order = text_of_(one).compare(text_of_(other));
  return order < 0 || (order == 0 && one < other);
}

std::size_t ValueOrder::PieceFor(std::uint32_t value) const {
  const auto after = std::partition_point(
      pieces_.begin(), pieces_.end(), [&](const Piece& piece) { return !IsBefore(value, piece.front()); });
  return after == pieces_.begin() ? 0 : static_cast<std::size_t>(after - pieces_.begin()) - 1;
}

}  // namespace slp
