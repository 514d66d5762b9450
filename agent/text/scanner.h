// The one reader of text that all grammars share: a position in a text that never leaves it. Everything that
// looks at single characters of a peer's text goes through here. Values; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "text/characters.h"

namespace slp {

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  bool AtEnd() const { return position_ == text_.size(); }

  /// How many characters have been taken.
  std::size_t position() const { return position_; }

  /// The next character, none at the end.
  std::optional<char> Peek() const { return AtEnd() ? std::nullopt : std::optional<char>(text_[position_]); }

  /// Takes the next character, none at the end.
  std::optional<char> Take() { return AtEnd() ? std::nullopt : std::optional<char>(text_[position_++]); }

  /// Takes the next character if it is `c`.
  bool TakeIf(char c) {
    const bool is_next = Peek() == c;
    position_ += is_next ? 1 : 0;
    return is_next;
  }

  /// Takes `prefix` if the text goes on with it, ASCII letters in either case.
  bool TakePrefix(std::string_view prefix);

  /// Takes characters as long as `predicate(char)` holds.
  template <typename Predicate>
  std::string_view TakeWhile(Predicate predicate) {
    const std::size_t begin = position_;
    while (!AtEnd() && predicate(text_[position_])) {
      ++position_;
    }
    return text_.substr(begin, position_ - begin);
  }

  /// Takes characters up to the first for which `predicate(char)` holds, or all that are left.
  template <typename Predicate>
  std::string_view TakeUntil(Predicate predicate) {
    return TakeWhile([&predicate](char c) { return !predicate(c); });
  }

  void SkipSpace() { TakeWhile(IsSpace); }

  /// Takes a backslash and two hexadecimal digits and gives the byte; takes nothing and gives none when the
  /// text does not go on like this.
  std::optional<unsigned char> TakeEscape();

  /// What has not been taken yet.
  std::string_view Rest() const { return text_.substr(position_); }

 private:
  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace slp
