#include "text/attribute_value.h"

#include <limits>
#include <optional>
#include <utility>

#include "text/escape.h"
#include "text/fold.h"
#include "text/scanner.h"

namespace slp {
namespace {

/// [-]1*DIGIT within 32 bits; what is larger is a string (RFC 2608 section 5).
std::optional<std::int32_t> ParseInteger(std::string_view text) {
  Scanner scanner(text);
  const bool negative = scanner.TakeIf('-');
  const std::int64_t limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} + (negative ? 1 : 0);
  const std::string_view digits = scanner.TakeWhile(IsDigit);
  if (digits.empty() || !scanner.AtEnd()) {
    return std::nullopt;
  }
  std::int64_t magnitude = 0;
  for (const char digit : digits) {
    magnitude = magnitude * 10 + (digit - '0');
    if (magnitude > limit) {
      return std::nullopt;
    }
  }
  return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

}  // namespace

Result<AttributeValue> ParseAttributeValue(std::string_view raw, std::string_view others) {
  AttributeValue value;
  value.raw = raw;
  const std::string_view text = Trim(raw);
  if (auto opaque = DecodeOpaque(text)) {
    value.content = std::move(*opaque);
  } else if (EqualFolded(text, "true") || EqualFolded(text, "false")) {
    value.content = EqualFolded(text, "true");
  } else if (const auto integer = ParseInteger(text)) {
    value.content = *integer;
  } else {
    auto plain = UnescapeReserved(raw, others);
    if (!plain) {
      return plain.error();
    }
    value.content = std::move(plain).value();
  }
  return value;
}

}  // namespace slp
