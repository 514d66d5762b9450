// The character classes that the grammars of SLP are made of (RFC 2608 section 5). Classes are ASCII only and
// never depend on the locale; bytes from 0x80 on belong to none but "safe". Pure functions; any thread.
#pragma once

#include <string_view>

namespace slp {

constexpr bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

/// White space as comparisons fold it (RFC 2608 section 6.4).
constexpr bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// -1 when `c` is no hexadecimal digit.
constexpr int HexDigitValue(char c) {
  if (IsDigit(c)) {
    return c - '0';
  }
  const char lower = ToLower(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

constexpr bool IsOneOf(char c, std::string_view set) {
  return set.find(c) != std::string_view::npos;
}

/// What must be escaped in attribute tags and values.
constexpr bool IsReserved(char c) {
  return IsControl(c) || IsOneOf(c, "(),\\!<=>~");
}

/// What may stand in no attribute tag, escaped or not: bad-tag and the star.
constexpr bool IsBadInTag(char c) {
  return IsOneOf(c, "\r\n\t_*");
}

}  // namespace slp
