// Tag lists with wildcards (RFC 2608 section 9.4) over the attribute list in the second line.
#include <algorithm>
#include <limits>

#include "fuzz/fuzz_target.h"
#include "slpd/requests/request_lists.h"
#include "text/attributes.h"
#include "text/fold.h"
#include "text/wildcard.h"

namespace slp::fuzz {
namespace {

void CheckSelection(const std::vector<std::string>& patterns, const AttributeList& list) {
  Effort effort(std::numeric_limits<std::size_t>::max());
  const TagPatterns ready(patterns);
  const AttributeList selected = list.Select(ready, effort);
  if (patterns.empty()) {
    return Require(selected == list, "an empty list selects everything");
  }
  AttributeList rest = list;
  rest.RemoveMatching(ready, effort);
  Require(selected.items().size() + rest.items().size() == list.items().size(),
          "an attribute is either selected or left");
  for (const Attribute& attribute : selected.items()) {
    Require(ready.Matches(attribute.tag, effort) && rest.Find(attribute.tag) == nullptr,
            "what is selected matches");
  }
}

void CheckWildcards(std::string_view text) {
  const Result<std::vector<std::string>> pieces = SplitAtWildcards(text);
  if (pieces && pieces->size() == 1) {
    Require(MatchesPieces(*pieces, pieces->front()), "a text without stars matches itself");
  }
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  slp::fuzz::CheckWildcards(first);
  const auto patterns = slp::ParseTagList(first);
  const auto attributes = slp::AttributeList::Parse(second);
  if (patterns && attributes) {
    slp::fuzz::CheckSelection(*patterns, *attributes);
  }
  return 0;
}
