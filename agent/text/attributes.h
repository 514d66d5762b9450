// Attribute lists (RFC 2608 section 5): "(tag=value,value),keyword". Values; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "text/attribute_value.h"
#include "text/tag.h"

namespace slp {

/// A keyword has no values; "(tag=)" has one empty string.
struct Attribute {
  std::string tag;  ///< unescaped, in the case that it was given in
  std::vector<AttributeValue> values;

  bool IsKeyword() const { return values.empty(); }
  bool operator==(const Attribute&) const = default;
};

class AttributeList {
 public:
  /// kParseError for unbalanced brackets, a reserved character that stands unescaped, a control character, a
  /// bad escape, an empty or invalid tag or one that appears twice, values of different types in one
  /// attribute. What parses here can be matched, written and read again later without another failure. The
  /// empty text is the empty list. Blanks around an attribute are skipped, and "(keyword)" is taken for
  /// "keyword".
  static Result<AttributeList> Parse(std::string_view text);

  const std::vector<Attribute>& items() const { return items_; }
  bool empty() const { return items_.empty(); }

  /// Null when the list has no such attribute; tags compare as SLP compares strings. Takes time logarithmic
  /// in the number of attributes.
  const Attribute* Find(std::string_view tag) const;

  /// Replaces or adds the attributes of `update` (an incremental registration, RFC 2608 section 9.3).
  void Merge(const AttributeList& update);

  /// Removes the attributes whose tags match one of `patterns`. When `effort` does not suffice, what is left
  /// means nothing.
  void RemoveMatching(const TagPatterns& patterns, Effort& effort);

  /// Only the attributes whose tags match one of `patterns`; no patterns: all. When `effort` does not
  /// suffice, what is returned means nothing.
  AttributeList Select(const TagPatterns& patterns, Effort& effort) const;

  /// The list as text, each value as it was given.
  std::string ToString() const;

  bool operator==(const AttributeList&) const = default;

 private:
  /// Where an attribute stands in items_. Its tag is in normal form: comparing tags as they were given would
  /// pass over the same long run of white space again and again.
  struct Place {
    std::string tag;
    std::size_t index;
    bool operator==(const Place&) const = default;
  };

  /// Brings order_ up to date with items_.
  void Sort();
  bool HasDuplicates() const;
  std::optional<std::size_t> IndexOf(std::string_view tag) const;

  std::vector<Attribute> items_;
  std::vector<Place> order_;
};

/// The raw value text of `tag` in `list`, for SLPParseAttrs: everything between '=' and ')', still escaped;
/// "" for a keyword. kParseError when the tag is absent or the brackets and commas of the list do not fit
/// together. What stands inside the brackets is not judged: a list that an indulgent daemon handed out stays
/// readable.
Result<std::string> RawAttributeValue(std::string_view list, std::string_view tag);

}  // namespace slp
