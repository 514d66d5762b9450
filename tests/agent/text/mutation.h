// Pseudo-random changes to texts, the same in every run.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace slp {

class Mutator {
 public:
  /// Inserts and overwrites with characters of `alphabet`.
  Mutator(unsigned seed, std::string alphabet) : random_(seed), alphabet_(std::move(alphabet)) {}

  std::size_t Below(std::size_t bound) { return random_() % bound; }

  /// `text` with one to four characters inserted, overwritten or removed.
  std::string Mutate(std::string text) {
    for (std::size_t edits = 1 + Below(4); edits > 0; --edits) {
      const std::size_t at = Below(text.size() + 1);
      const std::size_t kind = Below(3);
      if (kind == 0 || at == text.size()) {
        text.insert(at, 1, Any());
      } else if (kind == 1) {
        text.erase(at, 1 + Below(3));
      } else {
        text[at] = Any();
      }
    }
    return text;
  }

  /// A text of fewer than `bound` characters of the alphabet.
  std::string Make(std::size_t bound) {
    std::string text;
    for (std::size_t length = Below(bound); length > 0; --length) {
      text += Any();
    }
    return text;
  }

 private:
  char Any() { return alphabet_[Below(alphabet_.size())]; }

  std::mt19937 random_;
  std::string alphabet_;
};

}  // namespace slp
