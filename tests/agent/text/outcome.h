// Results as printable, comparable values, so that a failing row shows what came instead.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "base/error.h"

namespace slp {

/// The value, or none for a parse error; any other error is a failure of its own.
template <typename T>
std::optional<T> ValueOf(const Result<T>& result) {
  if (result) {
    return result.value();
  }
  return result.error() == Error::kParseError ? std::nullopt
                                              : throw std::string("an error other than kParseError");
}

/// A text with embedded NULs from a literal.
template <std::size_t size>
std::string WithNuls(const char (&literal)[size]) {
  return std::string(literal, size - 1);
}

inline std::string Repeat(std::string_view text, std::size_t count) {
  std::string repeated;
  repeated.reserve(text.size() * count);
  for (std::size_t i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

}  // namespace slp
