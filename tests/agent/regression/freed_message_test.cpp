// The registry keeps nothing of the message that a registration came in: the message's memory is gone, or
// another message's, as soon as it is answered.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

/// Hands the message over in memory that is overwritten and freed right after.
void HandOver(DaemonLogic& daemon, const Message& message) {
  const Bytes bytes = *Encode(message);
  const auto memory = std::make_unique<std::uint8_t[]>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), memory.get());
  EXPECT_TRUE(daemon.handler.Handle({memory.get(), bytes.size()}, kOwnHost, daemon.now));
  std::fill_n(memory.get(), bytes.size(), std::uint8_t{0xDD});
}

TEST(FreedMessageTest, EverythingThatARegistrationSaidIsStillThere) {
  DaemonLogic daemon;
  Message registration =
      MakeMessage(MakeSrvReg("service:x:y://h:1/p", "service:x:y", "(a=1),(b=text)"), "de-AT");
  registration.header.fresh = true;
  HandOver(daemon, registration);
  Message update = MakeMessage(MakeSrvReg("service:x:y://h:1/p", "service:x:y", "(c=new)"), "de-AT");
  HandOver(daemon, update);
  HandOver(daemon, MakeMessage(SrvDereg{"DEFAULT", {0, "service:x:y://h:1/p", {}}, "b"}, "de-AT"));

  const SrvRply found{Error::kOk, {{3600, "service:x:y://h:1/p", {}}}};
  EXPECT_EQ(daemon.Ask(MakeMessage(MakeSrvRqst("service:x", "(&(a=1)(c=new))"), "de")), ReplyOf(found, "de"));
  EXPECT_EQ(daemon.Ask(MakeMessage(MakeAttrRqst("service:x:y://h:1/p"), "de")),
            ReplyOf(AttrRply{Error::kOk, "(a=1),(c=new)", {}}, "de"));
  EXPECT_EQ(daemon.Ask(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}),
            ReplyOf(SrvTypeRply{Error::kOk, "service:x:y"}));
  daemon.registry.Expire(daemon.now + Seconds(3601));
  EXPECT_EQ(daemon.registry.size(), 0U);
}

}  // namespace
}  // namespace slp
