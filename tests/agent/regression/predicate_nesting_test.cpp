// How deep a predicate nests is the sender's choice; the stack is not to end before the text does.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

std::string Repeated(std::string_view text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) {
    repeated += text;
  }
  return repeated;
}

std::string Nested(std::string_view opening, int depth) {
  return Repeated(opening, depth) + "(a=1)" + Repeated(")", depth);
}

TEST(PredicateNestingTest, TheLimitIsTakenAndOneMoreIsNot) {
  // A comparison is a level of its own.
  EXPECT_TRUE(Predicate::Parse(Nested("(!", Predicate::kMaximumDepth - 1)));
  EXPECT_EQ(Predicate::Parse(Nested("(!", Predicate::kMaximumDepth + 1)).error(), Error::kParseError);
}

TEST(PredicateNestingTest, AsDeepAsAMessageCanHold) {
  DaemonLogic daemon;
  daemon.Register(MakeSrvReg("service:x://h", "service:x", "(a=1)"));
  for (const std::string_view opening : {"(!", "(&", "(|", "("}) {
    EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", Nested(opening, 20'000))),
              ReplyOf(SrvRply{Error::kParseError, {}}));
    EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", Repeated(opening, 30'000))),
              ReplyOf(SrvRply{Error::kParseError, {}}));
  }
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", Nested("(&", 100))),
            ReplyOf(SrvRply{Error::kOk, {{3600, "service:x://h", {}}}}));
}

}  // namespace
}  // namespace slp
