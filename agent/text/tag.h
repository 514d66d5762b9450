// Attribute tags, and the tag lists with wildcards that ask for them (RFC 2608 sections 5 and 9.4). Values;
// any thread.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/error.h"
#include "text/effort.h"
#include "text/keyed_hash.h"

namespace slp {

/// A tag as it stands in a list or a predicate, unescaped and without white space around it. kParseError when
/// it is empty, has a bad escape, or holds a character that no tag may have.
Result<std::string> ParseTag(std::string_view raw);

/// Whether `pattern` is an item of a tag list: a tag, in which a '*' may stand for any characters.
bool IsValidTagPattern(std::string_view pattern);

/// A tag list made ready for many questions.
class TagPatterns {
 public:
  /// Items that are not valid match nothing.
  explicit TagPatterns(const std::vector<std::string>& patterns);

  /// Whether it was made from an empty list, which asks for everything.
  bool empty() const { return is_empty_; }

  /// An empty list matches nothing here. Takes what the comparisons with wildcards cost from `effort`; when
  /// that does not suffice, what is returned means nothing.
  bool Matches(std::string_view tag, Effort& effort) const;

 private:
  bool is_empty_;
  std::unordered_set<std::string, TextHash> plain_;  // in normal form
  std::vector<std::vector<std::string>> wildcards_;  // cut at the stars
};

}  // namespace slp
