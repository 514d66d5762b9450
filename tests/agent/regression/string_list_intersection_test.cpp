// Comparing two string lists must end with the shorter one. The texts end where their memory ends, which the
// address sanitizer watches.
#include <gtest/gtest.h>

#include <vector>

#include "agent/slpd/daemon_logic.h"
#include "text/string_list.h"

namespace slp {
namespace {

std::vector<std::string> Split(std::string_view text) {
  const std::vector<char> exact(text.begin(), text.end());
  return SplitStringList({exact.data(), exact.size()});
}

TEST(StringListIntersectionTest, ListsThatEndInEachOther) {
  struct Row {
    std::string_view a;
    std::string_view b;
    bool expected;
  };
  const Row rows[] = {{"abc", "ab", false},  {"abc,a", "ab,abc", true}, {"a,", "a", true},
                      {"", "a", false},      {",,,", ",", false},       {"a,b,c", "c", true},
                      {"a,b,cc", "c", false}};
  for (const Row& row : rows) {
    EXPECT_EQ(ListsIntersect(Split(row.a), Split(row.b)), row.expected) << row.a << " and " << row.b;
    EXPECT_EQ(ListsIntersect(Split(row.b), Split(row.a)), row.expected) << row.a << " and " << row.b;
  }
}

TEST(StringListIntersectionTest, ScopesOfARequestThatEndInTheMidstOfTheServedOnes) {
  DaemonLogic daemon;
  for (const char* scopes : {"DEFAUL", "DEFAULTS", "TAMR,DEFAUL,", ",", "DEFAULT\\2"}) {
    EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "", scopes)),
              ReplyOf(SrvRply{Error::kScopeNotSupported, {}}))
        << scopes;
  }
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "", "x,,default,")), ReplyOf(SrvRply{}));
}

}  // namespace
}  // namespace slp
