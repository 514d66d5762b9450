// The daemon on the IPv6 loopback address, by real sockets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "agent/slpd_server/bytes.h"
#include "agent/slpd_server/client.h"
#include "agent/slpd_server/loop_thread.h"
#include "slpd/server/server.h"
#include "support/free_port.h"
#include "support/ipv6.h"
#include "wire/codec.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Ipv6ServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!support::HasIpv6()) {
      GTEST_SKIP() << support::kNoIpv6;
    }
  }

  ~Ipv6ServerTest() override {
    loop_.Do([this] { server_.reset(); });
  }

  void Start(const std::string& interfaces, const std::string& use_ipv6 = "true") {
    ConfigurationSources sources;
    sources.files = {};
    sources.overrides = {{"net.slp.interfaces", interfaces},
                         {"net.slp.port", std::to_string(port_)},
                         {"net.slp.useIPv6", use_ipv6}};
    std::vector<std::string> problems;
    const Configuration configuration = ReadConfiguration(sources, problems);
    std::string reason;
    ASSERT_TRUE(loop_.Do([&] {
      server_ = std::make_unique<Server>(loop_.io(), log_, [] { return std::chrono::milliseconds(100'000); });
      return server_->Start(configuration, reason);
    })) << reason;
  }

  std::vector<std::string> Served() {
    return loop_.Do([this] { return server_->listeners().ServedEndpoints(); });
  }

  std::string At(const std::string& host) const { return host + ":" + std::to_string(port_); }

  const std::uint16_t port_ = support::FreePort();
  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  LoopThread loop_;
  std::unique_ptr<Server> server_;
};

TEST_F(Ipv6ServerTest, RegistersAndFindsOverUdpAndTcp) {
  Start("127.0.0.1,::1");
  EXPECT_THAT(Served(), ElementsAre(At("127.0.0.1"), At("[::1]")));
  const asio::ip::udp::endpoint ipv6(asio::ip::address_v6::loopback(), port_);
  const asio::ip::udp::endpoint ipv4(asio::ip::address_v4::loopback(), port_);
  ASSERT_EQ(Register(ipv6, "service:x://[::1]:80", 1000), Error::kOk);
  EXPECT_THAT(FindServices(ipv6, "service:x"), ElementsAre("service:x://[::1]:80"));
  EXPECT_THAT(FindServices(ipv4, "service:x"), ElementsAre("service:x://[::1]:80"));

  TcpClient client({asio::ip::address_v6::loopback(), port_}, "::1");
  ASSERT_TRUE(client.Send(BytesOf(5, SrvRqst{{}, "service:x", "DEFAULT", {}, {}})));
  const auto reply = client.Receive();
  ASSERT_TRUE(reply);
  Message expected;
  expected.header.xid = 5;
  expected.body = SrvRply{Error::kOk, {{1000, "service:x://[::1]:80", {}}}};
  EXPECT_EQ(Decode(*reply).value(), expected);
}

TEST_F(Ipv6ServerTest, AnAddressThatIsNotThereCostsIpv4Nothing) {
  Start("127.0.0.1,2001:db8::99");
  EXPECT_THAT(Served(), ElementsAre(At("127.0.0.1")));
  EXPECT_THAT(log_text_.str(), HasSubstr("net.slp.interfaces names 2001:db8::99, which is no address"));
}

TEST_F(Ipv6ServerTest, SwitchedOffItListensOnIpv4Alone) {
  Start("lo,127.0.0.1", "false");
  EXPECT_THAT(Served(), ElementsAre(At("127.0.0.1")));
}

}  // namespace
}  // namespace slp
