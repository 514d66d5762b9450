#include "text/scanner.h"

namespace slp {

bool Scanner::TakePrefix(std::string_view prefix) {
  const std::string_view next = text_.substr(position_, prefix.size());
  if (next.size() != prefix.size()) {
    return false;
  }
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if (ToLower(next[i]) != ToLower(prefix[i])) {
      return false;
    }
  }
  position_ += prefix.size();
  return true;
}

std::optional<unsigned char> Scanner::TakeEscape() {
  const std::string_view next = text_.substr(position_, 3);
  if (next.size() != 3 || next[0] != '\\') {
    return std::nullopt;
  }
  const int high = HexDigitValue(next[1]);
  const int low = HexDigitValue(next[2]);
  if (high < 0 || low < 0) {
    return std::nullopt;
  }
  position_ += 3;
  return static_cast<unsigned char>(high * 16 + low);
}

}  // namespace slp
