// An attribute list with brackets that don't match or reserved characters that stand unescaped is refused
// when it comes; what was once stored is never read in another way by a filtered search.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

TEST(AttributeListTest, IsRefusedAndASearchWithAFilterIsAnswered) {
  DaemonLogic daemon;
  ASSERT_EQ(daemon.Register(MakeSrvReg("service:x://good", "service:x", "(a=1),(b=2)")), Error::kOk);
  const char* const lists[] = {
      "(a=1",       "a=1)", "(a=1))",    "((a=1)",  "(a=1),(", "(a=1),)", "(a=(1)", "(a=1)(b=2)", ")(",
      "(a=1,(b=2)", "(=1)", "(a=1),,(b", "(a=b=c)", "(a=b<c)", "(a=!b)",  "(a=~b)", "(a=b\\c)",   "a(b",
      "(a=\x01)",   "a,b)", "(a",        "(a,b)",   "(a=\\2)", "(a>=1)",  "(*=1)",  "(a=1),(a)",
  };
  for (const char* list : lists) {
    SCOPED_TRACE(list);
    EXPECT_EQ(daemon.Register(MakeSrvReg("service:x://bad", "service:x", list)), Error::kInvalidRegistration);
    EXPECT_EQ(daemon.Register(MakeSrvReg("service:x://good", "service:x", list), false),
              Error::kInvalidRegistration);
    EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "(&(a=1)(b>=2))")),
              ReplyOf(SrvRply{Error::kOk, {{3600, "service:x://good", {}}}}));
    EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x", "a*,b")),
              ReplyOf(AttrRply{Error::kOk, "(a=1),(b=2)", {}}));
  }
}

}  // namespace
}  // namespace slp
