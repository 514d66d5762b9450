// How much comparing one request may still cost. What a request brings is multiplied by what is stored, so
// that one message could keep a search busy for minutes; the sum of its comparisons is therefore bounded. A
// value; one thread at a time.
#pragma once

#include <cstddef>

namespace slp {

class Effort {
 public:
  /// What one comparison costs beside the bytes that it looks at.
  static constexpr std::size_t kComparison = 16;

  /// A unit is about the time in which one byte is compared.
  explicit Effort(std::size_t units) : left_(units) {}

  /// Whether that much was left. Once it was not, nothing is left any more.
  bool Spend(std::size_t units) {
    exhausted_ = exhausted_ || units > left_;
    left_ = exhausted_ ? 0 : left_ - units;
    return !exhausted_;
  }

  /// Whether more was asked for than was there: what was compared with it means nothing then.
  bool exhausted() const { return exhausted_; }

 private:
  std::size_t left_;
  bool exhausted_ = false;
};

}  // namespace slp
