// String lists, as scopes and previous responders are. The second line is a list that the first is combined
// with.
#include <algorithm>

#include "fuzz/fuzz_target.h"
#include "slpd/requests/request_lists.h"
#include "text/string_list.h"

namespace slp::fuzz {
namespace {

void CheckLists(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  Require(SplitStringList(JoinStringList(a)) == a, "a list that was written is read as the same");
  Require(std::find(a.begin(), a.end(), "") == a.end(), "no element is empty");
  Require(ListContainsAll(a, a), "a list contains itself");
  Require(ListsIntersect(a, b) == ListsIntersect(b, a), "having elements in common goes both ways");

  const std::vector<std::string> both = ListUnion(a, b);
  Require(ListContainsAll(both, a) && ListContainsAll(both, b), "the union contains both lists");
  const std::vector<std::string> served = ServedScopes(JoinStringList(a), b);
  Require(ListContainsAll(a, served) && ListContainsAll(b, served), "served scopes are in both lists");
  Require(served.empty() != ListsIntersect(a, b), "some scope is served exactly when one is in both lists");
  for (const std::string& scope : a) {
    Require(!IsValidScope(scope) || scope.find('*') == std::string::npos, "a scope name holds no star");
  }
}

}  // namespace
}  // namespace slp::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [first, second] = slp::fuzz::FirstLineAndRest(slp::fuzz::TextOf(data, size));
  slp::fuzz::CheckLists(slp::SplitStringList(first), slp::SplitStringList(second));
  return 0;
}
