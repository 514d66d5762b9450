// An empty element of a tag list is passed over; it once kept a daemon in a loop that never ended.
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

TEST(EmptyTagTest, InAttributeRequestsAndDeregistrations) {
  for (const char* tags : {",a", "a,", "a,,a", ",,,a,,,", " , a , "}) {
    SCOPED_TRACE(tags);
    DaemonLogic daemon;
    daemon.Register(MakeSrvReg("service:x://h", "service:x", "(a=1),(b=2)"));
    EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x://h", tags)), ReplyOf(AttrRply{Error::kOk, "(a=1)", {}}));
    EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x", tags)), ReplyOf(AttrRply{Error::kOk, "(a=1)", {}}));
    EXPECT_EQ(daemon.Ask(SrvDereg{"DEFAULT", {0, "service:x://h", {}}, tags}, kOwnHost), ReplyOf(SrvAck{}));
    EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x://h")), ReplyOf(AttrRply{Error::kOk, "(b=2)", {}}));
  }
}

TEST(EmptyTagTest, AListOfNothingElseAsksForEverything) {
  DaemonLogic daemon;
  daemon.Register(MakeSrvReg("service:x://h", "service:x", "(a=1),(b=2)"));
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x://h", ",,,")),
            ReplyOf(AttrRply{Error::kOk, "(a=1),(b=2)", {}}));
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x://h", std::string(60'000, ','))),
            ReplyOf(AttrRply{Error::kOk, "(a=1),(b=2)", {}}));
}

}  // namespace
}  // namespace slp
