// What the daemon does while the system does not list the host's interfaces, by real sockets.
#include "slpd/server/host_interfaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>

#include "agent/slpd_server/bytes.h"
#include "agent/slpd_server/client.h"
#include "agent/slpd_server/loop_thread.h"
#include "slpd/server/server.h"
#include "support/free_port.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using asio::ip::make_address;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;

constexpr const char* kProblem = "the system does not list this host's interfaces";

class HostInterfacesTest : public testing::Test {
 protected:
  ~HostInterfacesTest() override {
    loop_.Do([this] { server_.reset(); });
  }

  bool Start(const std::string& interfaces) {
    configuration_ = Configured(interfaces);
    std::string reason;
    return loop_.Do([&] {
      server_ = std::make_unique<Server>(
          loop_.io(), log_, [this] { return milliseconds(now_ms_); }, ConnectionLimits(),
          Server::SecondsSince1970, Server::AnyNumber,
          [this](bool with_ipv6) { return failing_ ? std::nullopt : EnumerateInterfaces(with_ipv6); });
      return server_->Start(configuration_, reason);
    });
  }

  Configuration Configured(const std::string& interfaces) const {
    ConfigurationSources sources;
    sources.files = {};
    sources.overrides = {{"net.slp.interfaces", interfaces}, {"net.slp.port", std::to_string(port_)}};
    std::vector<std::string> problems;
    return ReadConfiguration(sources, problems);
  }

  std::vector<std::string> Served() {
    return loop_.Do([this] { return server_->listeners().ServedAddresses(); });
  }

  /// Whether it comes to serve these; only the loop knows when it asks again.
  bool ComesToServe(const std::vector<std::string>& addresses) {
    const auto end = steady_clock::now() + seconds(10);
    while (Served() != addresses) {
      if (steady_clock::now() >= end) {
        return false;
      }
      std::this_thread::sleep_for(milliseconds(10));
    }
    return true;
  }

  std::size_t TimesTold() {
    const std::string text = loop_.Do([this] { return log_text_.str(); });
    std::size_t count = 0;
    for (auto at = text.find(kProblem); at != std::string::npos; at = text.find(kProblem, at + 1)) {
      ++count;
    }
    return count;
  }

  const std::uint16_t port_ = support::FreePort();
  std::atomic<bool> failing_ = false;
  std::atomic<std::int64_t> now_ms_ = 100'000;
  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  LoopThread loop_;
  Configuration configuration_;
  std::unique_ptr<Server> server_;
};

TEST_F(HostInterfacesTest, WhatIsServedStaysServed) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  ASSERT_TRUE(Start("127.0.0.2"));
  failing_ = true;
  const asio::ip::udp::endpoint where(make_address("127.0.0.2"), port_);
  const Bytes request = BytesOf(7, SrvTypeRqst{});
  EXPECT_TRUE(AskUdp(where, request));
  EXPECT_EQ(TimesTold(), 0U) << "the list is still fresh";
  now_ms_ += 10'000;
  EXPECT_TRUE(AskUdp(where, request));
  std::string reason;
  EXPECT_TRUE(loop_.Do([&] { return server_->Reload(Configured("127.0.0.2,127.0.0.1"), reason); }));
  // It asks again after a second, which changes nothing either.
  std::this_thread::sleep_for(milliseconds(1500));
  EXPECT_THAT(Served(), ElementsAre("127.0.0.2", "127.0.0.1"));
  EXPECT_TRUE(AskUdp(where, request));
  EXPECT_EQ(TimesTold(), 1U);
}

TEST_F(HostInterfacesTest, IsAskedAgainUntilItTells) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  failing_ = true;
  ASSERT_TRUE(Start("127.0.0.2"));
  EXPECT_THAT(Served(), ElementsAre("127.0.0.1"));
  failing_ = false;
  EXPECT_TRUE(ComesToServe({"127.0.0.2"}));
  EXPECT_EQ(TimesTold(), 1U);
}

TEST_F(HostInterfacesTest, APlaceThatWasTakenIsServedWhenItIsFree) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  asio::io_context io;
  std::optional<asio::ip::tcp::acceptor> other_program;
  other_program.emplace(io, asio::ip::tcp::endpoint(make_address("127.0.0.2"), port_), false);
  ASSERT_TRUE(Start("127.0.0.1,127.0.0.2"));
  EXPECT_THAT(Served(), ElementsAre("127.0.0.1"));
  other_program.reset();
  EXPECT_TRUE(ComesToServe({"127.0.0.1", "127.0.0.2"}));
}

}  // namespace
}  // namespace slp
