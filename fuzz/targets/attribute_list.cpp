// Attribute lists (RFC 2608 section 5). The second line is an update of the first.
#include <limits>

#include "fuzz/fuzz_target.h"
#include "text/attributes.h"

namespace slp::fuzz {
namespace {

void CheckList(const AttributeList& list) {
  const Result<AttributeList> again = AttributeList::Parse(list.ToString());
  Require(again && again->ToString() == list.ToString(), "a list that was written is read as the same");
  Effort effort(std::numeric_limits<std::size_t>::max());
  Require(list.Select(TagPatterns({}), effort) == list, "no patterns select everything");
  for (const Attribute& attribute : list.items()) {
    Require(list.Find(attribute.tag) == &attribute, "each attribute is found by its tag");
  }
  AttributeList emptied = list;
  emptied.RemoveMatching(TagPatterns({"*"}), effort);
  Require(emptied.empty(), "a star removes everything");
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using slp::fuzz::Require;
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  static_cast<void>(slp::RawAttributeValue(first, second));
  auto list = slp::AttributeList::Parse(first);
  const auto update = slp::AttributeList::Parse(second);
  if (list) {
    slp::fuzz::CheckList(*list);
    if (!list->empty()) {
      Require(slp::RawAttributeValue(list->ToString(), list->items().front().tag).ok() ||
                  list->items().front().tag.find_first_of("(),\\!<=>~") != std::string::npos,
              "a plain tag's value can be read from the text");
    }
  }
  if (list && update) {
    list->Merge(*update);
    slp::fuzz::CheckList(*list);
    for (const slp::Attribute& attribute : update->items()) {
      const slp::Attribute* const merged = list->Find(attribute.tag);
      Require(merged != nullptr && merged->values == attribute.values, "an update's attributes hold");
    }
  }
  return 0;
}
