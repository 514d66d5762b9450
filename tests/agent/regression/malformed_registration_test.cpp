// A registration that turns out to be malformed half-way is given back once and leaves what was registered
// before as it was, also when it comes again and again.
#include <gtest/gtest.h>

#include <functional>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

TEST(MalformedRegistrationTest, LeavesTheEarlierOneAlone) {
  const auto good = [] { return MakeSrvReg("service:x://h", "service:x", "(a=1)"); };
  const std::function<void(SrvReg&)> damages[] = {
      [](SrvReg& r) { r.url.url = ""; },
      [](SrvReg& r) { r.url.url = "service:x"; },
      [](SrvReg& r) { r.url.lifetime = 0; },
      [](SrvReg& r) { r.service_type = ""; },
      [](SrvReg& r) { r.service_type = "service:(x"; },
      [](SrvReg& r) { r.attributes = "(a=1"; },
      [](SrvReg& r) { r.attributes = "(a=1),(a=2)"; },
      [](SrvReg& r) { r.attributes = "(a=\\zz)"; },
      [](SrvReg& r) { r.scopes = "other"; },
      [](SrvReg& r) { r.scopes = ""; },
      [](SrvReg& r) {
        r.authentication = {{2, {1}}};
      },
      [](SrvReg& r) {
        r.url.authentication = {{2, {1}}, {2, {}}};
      },
  };
  DaemonLogic daemon;
  ASSERT_EQ(daemon.Register(good()), Error::kOk);
  for (int round = 0; round < 3; ++round) {
    for (const auto& damage : damages) {
      SrvReg request = good();
      damage(request);
      EXPECT_NE(daemon.Register(request, round != 1), Error::kOk);
    }
  }
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x://h")), ReplyOf(AttrRply{Error::kOk, "(a=1)", {}}));
  EXPECT_EQ(daemon.registry.size(), 1U);
}

TEST(MalformedRegistrationTest, CutAnywhereItChangesNothing) {
  DaemonLogic daemon;
  Message message = MakeMessage(MakeSrvReg("service:x://h", "service:x", "(a=1)"));
  message.header.fresh = true;
  message.header.extensions = {{kExtensionProcessId, {0, 0, 0, 17}}};
  const Bytes whole = *Encode(message);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    daemon.handler.Handle(cut, kOwnHost, daemon.now);
    if (size >= 5) {
      cut[4] = static_cast<std::uint8_t>(size);
      daemon.handler.Handle(cut, kOwnHost, daemon.now);
    }
    ASSERT_EQ(daemon.registry.size(), 0U) << size;
  }
}

}  // namespace
}  // namespace slp
