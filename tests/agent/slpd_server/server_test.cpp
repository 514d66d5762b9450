#include "slpd/server/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <sstream>
#include <thread>

#include "agent/slpd_server/bytes.h"
#include "agent/slpd_server/client.h"
#include "agent/slpd_server/loop_thread.h"
#include "agent/slpd_server/temporary_folder.h"
#include "net/addresses.h"
#include "net/local_process.h"
#include "support/free_port.h"
#include "support/under_wine/under_wine.h"
#include "support/wait_until.h"

namespace slp {
namespace {

using kelsd::support::WaitUntil;
using support::FreePort;

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr std::uint32_t kBootTime = 1'700'000'000;

class ServerTest : public testing::Test {
 protected:
  ServerTest() { Configure({}); }

  ~ServerTest() override {
    loop_.Do([this] { server_.reset(); });
  }

  // Loopback and a free port, and what is given.
  void Configure(const std::vector<std::pair<std::string, std::string>>& properties) {
    ConfigurationSources sources;
    sources.files = {};
    sources.overrides = {{"net.slp.interfaces", "127.0.0.1"}, {"net.slp.port", std::to_string(port_)}};
    sources.overrides.insert(sources.overrides.end(), properties.begin(), properties.end());
    std::vector<std::string> problems;
    configuration_ = ReadConfiguration(sources, problems);
    ASSERT_THAT(problems, IsEmpty());
  }

  void Start() {
    std::string reason;
    ASSERT_TRUE(loop_.Do([&] {
      server_ = std::make_unique<Server>(
          loop_.io(), log_, [this] { return milliseconds(now_ms_); }, ConnectionLimits(),
          [] { return kBootTime; });
      return server_->Start(configuration_, reason);
    })) << reason;
  }

  // The clock moved by hand.
  void SetTime(std::int64_t ms) {
    now_ms_ = ms;
    loop_.Do([this] { server_->Tick(); });
  }

  std::size_t Registered() {
    return loop_.Do([this] { return server_->registry().size(); });
  }

  std::size_t WatchedProcesses() {
    return loop_.Do([this] { return server_->watched_processes(); });
  }

  std::string LogText() {
    return loop_.Do([this] { return log_text_.str(); });
  }

  asio::ip::udp::endpoint Udp() const { return {asio::ip::address_v4::loopback(), port_}; }
  asio::ip::tcp::endpoint Tcp() const { return {asio::ip::address_v4::loopback(), port_}; }

  const std::uint16_t port_ = FreePort();
  Configuration configuration_;
  std::atomic<std::int64_t> now_ms_{100'000};
  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  LoopThread loop_;
  std::unique_ptr<Server> server_;
};

TEST_F(ServerTest, RegistersAndFindsOverUdpTcpAndTheGroup) {
  Start();
  ASSERT_EQ(Register(Udp(), "service:printer:lpr://one", 1000), Error::kOk);
  EXPECT_THAT(FindServices(Udp(), "service:printer"), ElementsAre("service:printer:lpr://one"));

  const Bytes request = BytesOf(5, SrvRqst{{}, "service:printer:lpr", "DEFAULT", {}, {}});
  Message expected;
  expected.header.xid = 5;
  expected.body = SrvRply{Error::kOk, {{1000, "service:printer:lpr://one", {}}}};
  TcpClient client(Tcp());
  ASSERT_TRUE(client.Send(request));
  const auto over_tcp = client.Receive();
  ASSERT_TRUE(over_tcp);
  EXPECT_EQ(Decode(*over_tcp).value(), expected);

  asio::ip::udp::endpoint replier;
  const auto from_group = AskGroup({kMulticastGroup, port_}, request, replier);
  ASSERT_TRUE(from_group);
  EXPECT_EQ(Decode(*from_group).value(), expected);
  EXPECT_EQ(replier, Udp());
}

TEST_F(ServerTest, TheGroupHearsNothingOfWhatIsNotThere) {
  Start();
  asio::ip::udp::endpoint replier;
  EXPECT_EQ(AskGroup({kMulticastGroup, port_}, BytesOf(5, SrvRqst{{}, "service:none", "DEFAULT", {}, {}}),
                     replier, 200),
            std::nullopt);
}

TEST_F(ServerTest, WhatDoesNotFitADatagramIsThereOverTcp) {
  Start();
  constexpr std::size_t kServices = 100;
  for (std::size_t i = 0; i < kServices; ++i) {
    ASSERT_EQ(Register(Udp(), "service:printer:lpr://printer-" + std::to_string(i), 1000), Error::kOk);
  }
  const Bytes request = BytesOf(5, SrvRqst{{}, "service:printer", "DEFAULT", {}, {}});
  const auto over_udp = AskUdp(Udp(), request);
  ASSERT_TRUE(over_udp);
  EXPECT_TRUE(PeekHeader(*over_udp)->overflow);
  EXPECT_LE(over_udp->size(), 1400U);
  TcpClient client(Tcp());
  ASSERT_TRUE(client.Send(request));
  const auto over_tcp = client.Receive();
  ASSERT_TRUE(over_tcp);
  const auto decoded = Decode(*over_tcp);
  EXPECT_FALSE(decoded->header.overflow);
  EXPECT_EQ(std::get<SrvRply>(decoded->body).urls.size(), kServices);
}

TEST_F(ServerTest, MayGoWhileATimerOfItsOwnIsAlreadyOver) {
  asio::io_context io;
  // Two timers are over when the loop looks first: this one, and the server's own, which is set for the next
  // round of its search for directory agents by a clock that has passed it already.
  asio::steady_timer end(io, steady_clock::now());
  milliseconds now(100'000);
  auto server = std::make_unique<Server>(
      io, log_, [&] { return now += seconds(1); }, ConnectionLimits(), [] { return kBootTime; },
      [] { return 0U; });
  std::string reason;
  ASSERT_TRUE(server->Start(configuration_, reason)) << reason;
  end.async_wait([&](const asio::error_code&) { server.reset(); });
  io.run_for(seconds(2));
  EXPECT_TRUE(io.stopped());
}

TEST_F(ServerTest, AServiceGoesInTheSecondInWhichItsLifetimeEnds) {
  Start();
  ASSERT_EQ(Register(Udp(), "service:x://short", 5), Error::kOk);
  ASSERT_EQ(Register(Udp(), "service:x://long", 6), Error::kOk);
  SetTime(104'999);
  EXPECT_EQ(Registered(), 2U);
  SetTime(105'000);
  EXPECT_EQ(Registered(), 1U);
  SetTime(105'999);
  EXPECT_EQ(Registered(), 1U);
  SetTime(106'000);
  EXPECT_EQ(Registered(), 0U);
}

TEST_F(ServerTest, AServiceThatCameWithinASecondStaysForItsWholeLifetime) {
  Start();
  SetTime(100'900);
  ASSERT_EQ(Register(Udp(), "service:x://late", 1), Error::kOk);
  SetTime(101'000);
  EXPECT_EQ(Registered(), 1U);
  EXPECT_THAT(FindServices(Udp(), "service:x"), ElementsAre("service:x://late"));
  SetTime(101'899);
  EXPECT_EQ(Registered(), 1U);
  SetTime(101'900);
  EXPECT_EQ(Registered(), 0U);
}

TEST_F(ServerTest, TheTimerFollowsTheEarliestEnd) {
  const auto start = steady_clock::now();
  const auto elapsed = [&] { return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start); };
  std::string reason;
  ASSERT_TRUE(loop_.Do([&] {
    server_ = std::make_unique<Server>(loop_.io(), log_, elapsed);
    return server_->Start(configuration_, reason);
  })) << reason;
  ASSERT_EQ(Register(Udp(), "service:x://long", 1000), Error::kOk);
  ASSERT_EQ(Register(Udp(), "service:x://short", 1), Error::kOk);
  // The real timer is what is tested; the later end is far behind the limit.
  EXPECT_TRUE(WaitUntil([&] { return Registered() == 1; }));
  EXPECT_GE(elapsed(), milliseconds(1000));
}

TEST_F(ServerTest, WatchesAProcessOnlyWhileAServiceIsBoundToIt) {
  Start();
  const std::uint32_t process = CurrentProcessId();
  ASSERT_EQ(Register(Udp(), "service:x://bound", 1000, process), Error::kOk);
  EXPECT_EQ(WatchedProcesses(), 1U);
  ASSERT_EQ(Register(Udp(), "service:x://bound-too", 500, process), Error::kOk);
  EXPECT_EQ(WatchedProcesses(), 1U);
  SetTime(100'000 + 500'000);
  EXPECT_EQ(WatchedProcesses(), 1U) << "one of the two is still there";
  SetTime(100'000 + 1'000'000);
  EXPECT_EQ(Registered(), 0U);
  EXPECT_EQ(WatchedProcesses(), 0U);
}

Message Advertisement(std::uint16_t xid, std::uint32_t boot_timestamp) {
  Message message;
  message.header.xid = xid;
  message.body = DaAdvert{.error = Error::kOk,
                          .boot_timestamp = boot_timestamp,
                          .url = "service:directory-agent://127.0.0.1",
                          .scopes = "DEFAULT",
                          .attributes = "(room=7)",
                          .spi = {},
                          .authentication = {}};
  return message;
}

// The next message that reaches the group.
std::optional<Message> NextAdvertisement(GroupListener& listener, int limit_ms = 5000) {
  const auto bytes = listener.Receive(limit_ms);
  if (!bytes) {
    return std::nullopt;
  }
  const Result<Message> message = Decode(*bytes);
  return message ? std::optional(*message) : std::nullopt;
}

TEST_F(ServerTest, ADirectoryAgentAdvertisesItselfAtStartByHeartBeatAndAtItsEnd) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << "Wine keeps the daemon off its port when another socket hears the group there already";
  }
  GroupListener listener({kMulticastGroup, port_});
  Configure({{"net.slp.isDA", "true"},
             {"net.slp.activeDADetection", "false"},
             {"net.slp.DAHeartBeat", "60"},
             {"net.slp.DAAttributes", "(room=7)"}});
  Start();
  EXPECT_THAT(LogText(), HasSubstr(", scopes DEFAULT, as directory agent\n"));
  // Killed and started again within the second, it would have the same boot timestamp.
  SetTime(100'999);
  EXPECT_EQ(NextAdvertisement(listener, 50), std::nullopt);
  SetTime(101'000);
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, kBootTime));
  SetTime(102'999);
  EXPECT_EQ(NextAdvertisement(listener, 50), std::nullopt);
  SetTime(103'000);
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, kBootTime));
  SetTime(107'000);
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, kBootTime));
  SetTime(166'999);
  EXPECT_EQ(NextAdvertisement(listener, 50), std::nullopt);
  SetTime(167'000);
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, kBootTime));
  loop_.Do([this] { server_->Stop(); });
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, 0));
}

TEST_F(ServerTest, ADirectoryAgentAnswersTheGroupAndASingleAsker) {
  Configure({{"net.slp.isDA", "true"}, {"net.slp.DAAttributes", "(room=7)"}});
  Start();
  const Bytes request = BytesOf(5, SrvRqst{{}, "service:directory-agent", "", {}, {}});
  asio::ip::udp::endpoint replier;
  EXPECT_EQ(AskGroup({kMulticastGroup, port_}, request, replier, 50), std::nullopt);
  SetTime(101'000);
  const auto from_group = AskGroup({kMulticastGroup, port_}, request, replier);
  ASSERT_TRUE(from_group);
  EXPECT_EQ(Decode(*from_group).value(), Advertisement(5, kBootTime));
  const auto alone = AskUdp(Udp(), request);
  ASSERT_TRUE(alone);
  EXPECT_EQ(Decode(*alone).value(), Advertisement(5, kBootTime));
}

TEST_F(ServerTest, AReloadBeginsAndEndsTheRoleOfADirectoryAgent) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << "Wine keeps the daemon off its port when another socket hears the group there already";
  }
  GroupListener listener({kMulticastGroup, port_});
  Configure({{"net.slp.activeDADetection", "false"}});
  Start();
  const auto reload = [&](const char* is_agent) {
    Configure({{"net.slp.isDA", is_agent},
               {"net.slp.activeDADetection", "false"},
               {"net.slp.DAAttributes", "(room=7)"}});
    std::string reason;
    EXPECT_TRUE(loop_.Do([&] { return server_->Reload(configuration_, reason); })) << reason;
  };
  reload("true");
  SetTime(101'000);
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, kBootTime));
  reload("false");
  EXPECT_EQ(NextAdvertisement(listener), Advertisement(0, 0));
}

TEST_F(ServerTest, ARefusedRegistrationLeavesNoWatch) {
  Start();
  EXPECT_NE(Register(Udp(), "service:x://never", 0, 1), Error::kOk);
  EXPECT_EQ(WatchedProcesses(), 0U);
}

TEST_F(ServerTest, TellsOfAProcessThatIsNotToBeSeen) {
  Start();
  constexpr std::uint32_t kNoProcess = 0x7FFFFFFF;
  EXPECT_EQ(Register(Udp(), "service:x://lone", 1000, kNoProcess), Error::kOk);
  EXPECT_EQ(WatchedProcesses(), 0U);
  EXPECT_EQ(Registered(), 1U);
  EXPECT_THAT(LogText(),
              HasSubstr(" problem process 2147483647 is not to be seen from here: service:x://lone stays "
                        "until its lifetime ends\n"));
}

TEST_F(ServerTest, TracesWhatTheSettingsAskFor) {
  Configure({{"net.slp.traceMsg", "true"}, {"net.slp.traceReg", "true"}, {"net.slp.traceDrop", "true"}});
  Start();
  ASSERT_EQ(Register(Udp(), "service:x://one", 1000), Error::kOk);
  EXPECT_EQ(AskUdp(Udp(), {1, 2, 3}, 50), std::nullopt);
  EXPECT_TRUE(WaitUntil([&] { return LogText().find(" drop ") != std::string::npos; }));
  EXPECT_THAT(
      LogText(),
      AllOf(
          HasSubstr(" message from 127.0.0.1 (UDP): SrvReg xid=12 lang=en fresh url=\"service:x://one\" "
                    "lifetime=1000 "
                    "type=\"service:x\" scopes=\"DEFAULT\"\n"),
          HasSubstr(" registration registered service:x://one type=\"service:x\" lang=en scopes=\"DEFAULT\" "
                    "lifetime=1000\n"),
          HasSubstr(" bytes: SrvAck xid=12 lang=en error=0\n"),
          HasSubstr(" drop from 127.0.0.1 (UDP), 3 bytes: ")));
}

TEST_F(ServerTest, TracesNothingByDefault) {
  Start();
  ASSERT_EQ(Register(Udp(), "service:x://one", 1000), Error::kOk);
  EXPECT_EQ(AskUdp(Udp(), {1, 2, 3}, 50), std::nullopt);
  EXPECT_THAT(LogText(), AllOf(HasSubstr(" state slpd: ready on 127.0.0.1:" + std::to_string(port_) +
                                         ", scopes DEFAULT\n"),
                               Not(HasSubstr("service:x")), Not(HasSubstr("drop"))));
}

TEST_F(ServerTest, AReloadWithoutUsableSocketsKeepsEverything) {
  Start();
  ASSERT_EQ(Register(Udp(), "service:x://mine", 1000), Error::kOk);
  asio::io_context io;
  const asio::ip::tcp::acceptor holder(io, {asio::ip::address_v4::loopback(), FreePort()}, false);
  Configure(
      {{"net.slp.port", std::to_string(holder.local_endpoint().port())}, {"net.slp.useScopes", "other"}});
  std::string reason;
  EXPECT_FALSE(loop_.Do([&] { return server_->Reload(configuration_, reason); }));
  EXPECT_THAT(reason, StartsWith("cannot serve TCP 127.0.0.1:"));
  EXPECT_THAT(FindServices(Udp(), "service:x"), ElementsAre("service:x://mine"));
}

TEST_F(ServerTest, AReloadMovesToAnotherPort) {
  Start();
  ASSERT_EQ(Register(Udp(), "service:x://mine", 1000), Error::kOk);
  const std::uint16_t other = FreePort();
  Configure({{"net.slp.port", std::to_string(other)}});
  std::string reason;
  ASSERT_TRUE(loop_.Do([&] { return server_->Reload(configuration_, reason); })) << reason;
  EXPECT_THAT(FindServices({asio::ip::address_v4::loopback(), other}, "service:x"),
              ElementsAre("service:x://mine"));
}

TEST_F(ServerTest, RegistrationsOfTheFileAreThereFromTheFirstRequestOn) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("slp.reg", "service:x://from-file,en,65535\n\nnonsense\n");
  // A drive's letter stands behind a slash of its own.
  Configure({{"net.slp.serializedRegURL", "file://" + std::string(path.front() == '/' ? "" : "/") + path}});
  Start();
  EXPECT_THAT(FindServices(Udp(), "service:x"), ElementsAre("service:x://from-file"));
  EXPECT_THAT(LogText(),
              AllOf(HasSubstr(" problem " + folder.File("slp.reg") + ":3: "),
                    HasSubstr(" state slpd: 1 registrations from " + folder.File("slp.reg") + "\n")));
}

}  // namespace
}  // namespace slp
