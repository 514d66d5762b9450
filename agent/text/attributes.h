// Attribute lists (RFC 2608 section 5): "(tag=value,value),keyword". Values; any thread.
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

/// A keyword has no values; "(tag=)" has one empty string.
struct Attribute {
  std::string tag;  ///< in the case that it was given in
  std::vector<AttributeValue> values;

  bool IsKeyword() const { return values.empty(); }
  bool operator==(const Attribute&) const = default;
};

class AttributeList {
 public:
  /// kParseError for unbalanced brackets, a reserved character that stands unescaped, a control character, a
  /// bad escape, an empty or invalid tag or one that appears twice. What parses here can be matched, written
  /// and read again later without another failure. The empty text is the empty list.
  static Result<AttributeList> Parse(std::string_view text);

  const std::vector<Attribute>& items() const { return items_; }
  bool empty() const { return items_.empty(); }

  /// Null when the list has no such attribute; tags compare as SLP compares strings.
  const Attribute* Find(std::string_view tag) const;

  /// Replaces or adds the attributes of `update` (an incremental registration, RFC 2608 section 9.3).
  void Merge(const AttributeList& update);

  /// Removes the attributes whose tags match one of `patterns`; a '*' in a pattern stands for any text.
  void RemoveMatching(const std::vector<std::string>& patterns);

  /// Only the attributes whose tags match one of `patterns`; no patterns: all.
  AttributeList Select(const std::vector<std::string>& patterns) const;

  /// The list as text, each value as it was given.
  std::string ToString() const;

  bool operator==(const AttributeList&) const = default;

 private:
  std::vector<Attribute> items_;
};

/// The raw value text of `tag` in `list`, for SLPParseAttrs: everything between '=' and ')', still escaped;
/// "" for a keyword. kParseError when the tag is absent or the list is malformed.
Result<std::string> RawAttributeValue(std::string_view list, std::string_view tag);

}  // namespace slp
