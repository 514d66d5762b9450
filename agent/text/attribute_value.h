// One value of an attribute, or one operand of a search predicate, with its type (RFC 2608 section 5).
// Values; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/error.h"

namespace slp {

/// Bytes of an opaque value, written as \FF and escaped pairs.
using Opaque = std::vector<std::uint8_t>;

/// One value: "true"/"false" in any case, a decimal integer that fits in 32 bits, opaque bytes, or an
/// unescaped string.
struct AttributeValue {
  std::variant<std::string, std::int32_t, bool, Opaque> content;
  std::string raw;  ///< as it stood in the list, still escaped

  bool operator==(const AttributeValue&) const = default;
};

/// Finds the type of `raw` and its content; the empty text is the empty string. White space around it does
/// not count for the type. Of a string, only reserved characters and those of `others` may be escaped:
/// kParseError otherwise. Reserved characters that stand unescaped in `raw` are the caller's to find.
Result<AttributeValue> ParseAttributeValue(std::string_view raw, std::string_view others = {});

}  // namespace slp
