#include "text/tag.h"

#include <algorithm>
#include <utility>

#include "text/characters.h"
#include "text/escape.h"
#include "text/fold.h"
#include "text/wildcard.h"

namespace slp {

Result<std::string> ParseTag(std::string_view raw) {
  auto tag = UnescapeReserved(Trim(raw));
  if (tag && (tag->empty() || std::any_of(tag->begin(), tag->end(), IsBadInTag))) {
    return Error::kParseError;
  }
  return tag;
}

bool IsValidTagPattern(std::string_view pattern) {
  const auto is_bad = [](char c) { return c != '\\' && c != '*' && (IsReserved(c) || IsBadInTag(c)); };
  const auto pieces = SplitAtWildcards(Trim(pattern));
  return pieces && pieces.value() != std::vector<std::string>{""} &&
         std::none_of(pattern.begin(), pattern.end(), is_bad);
}

TagPatterns::TagPatterns(const std::vector<std::string>& patterns) : is_empty_(patterns.empty()) {
  for (const std::string& pattern : patterns) {
    auto pieces = SplitAtWildcards(pattern);
    if (!pieces) {
      continue;
    }
    if (pieces->size() == 1) {
      plain_.insert(std::move(pieces->front()));
    } else {
      wildcards_.push_back(std::move(pieces).value());
    }
  }
}

bool TagPatterns::Matches(std::string_view tag, Effort& effort) const {
  const std::string folded = Fold(tag);
  return plain_.count(folded) != 0 ||
         std::any_of(wildcards_.begin(), wildcards_.end(), [&](const std::vector<std::string>& pieces) {
           return effort.Spend(Effort::kComparison + folded.size()) && MatchesPieces(pieces, folded);
         });
}

}  // namespace slp
