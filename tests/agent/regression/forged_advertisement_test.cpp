// Advertisements that somebody sends in others' names make the daemon no amplifier: over its sockets those
// get no more than was sent, and nothing of its services. The figures stand in the output.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <chrono>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "agent/slpd/daemon_logic.h"
#include "slpd/server/directory_traffic.h"
#include "support/free_port.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using asio::ip::make_address;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kAgent = "127.0.0.2";
constexpr int kOwnServices = 20;

/// Nothing is asked of it here: what comes in is handed to the traffic by hand.
class NoReceiver : public MessageReceiver {
  std::chrono::milliseconds WaitBefore(std::span<const std::uint8_t>, const Sender&) override {
    return std::chrono::milliseconds(0);
  }
  std::optional<Bytes> OnMessage(std::span<const std::uint8_t>, const Sender&) override {
    return std::nullopt;
  }
  void OnDropped(std::string_view, std::size_t, const Sender&) override {}
};

/// A host in whose name somebody sends.
class Host {
 public:
  Host(std::string address, std::uint16_t port) : address_(std::move(address)) {
    const asio::ip::udp::endpoint place(make_address(address_), port);
    socket_.open(place.protocol());
    socket_.bind(place);
    socket_.non_blocking(true);
  }

  const std::string& address() const { return address_; }

  /// What it has got since the last call; comes at once on a loopback network, or within `limit`.
  std::vector<Bytes> Take(std::chrono::milliseconds limit = std::chrono::milliseconds(0)) {
    std::vector<Bytes> all;
    const auto end = std::chrono::steady_clock::now() + limit;
    do {
      Bytes bytes(65536);
      asio::error_code error;
      bytes.resize(socket_.receive(asio::buffer(bytes), 0, error));
      if (!error) {
        all.push_back(std::move(bytes));
      } else if (!all.empty() || limit.count() == 0) {
        break;
      } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    } while (std::chrono::steady_clock::now() < end || !all.empty());
    return all;
  }

 private:
  std::string address_;
  asio::io_context io_;
  asio::ip::udp::socket socket_{io_};
};

class ForgedAdvertisementTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (kelsd::support::UnderWine()) {
      GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
    }
    for (int i = 0; i < kOwnServices; ++i) {
      ASSERT_EQ(registry_.Register(MakeRegistration("service:x://" + std::to_string(i), "service:x",
                                                    "(a=" + std::string(1000, 'b') + ")"),
                                   now_),
                Error::kOk);
    }
    std::vector<std::string> problems;
    ListenPlan plan;
    plan.places = {{make_address(kAgent), "lo", false}};
    plan.port = port_;
    ASSERT_TRUE(listeners_.Apply(plan, problems));
    ASSERT_THAT(problems, IsEmpty());
    AgentSettings settings = TestSettings();
    settings.own_addresses = {kAgent};
    Properties properties;
    properties.Set("net.slp.activeDADetection", "false");
    traffic_.Apply(settings, properties, now_);
  }

  /// Hands in what claims to come from `host`; an answer to a question is from itself.
  void Hear(const Host& host, std::uint32_t boot, std::uint16_t xid = 0) {
    Message message;
    message.header.xid = xid;
    message.body =
        DaAdvert{Error::kOk, boot, "service:directory-agent://" + host.address(), "DEFAULT", "", "", {}};
    const Bytes bytes = *Encode(message);
    in_ += xid == 0 ? bytes.size() : 0;
    const RequestOrigin origin{host.address(), false, false, Transport::kUdpUnicast, kAgent};
    traffic_.TakeMessage(message, bytes.size(), origin, now_);
    traffic_.Tick(now_);
  }

  /// Answers as an agent that is there. Whether that was a registration.
  bool Answer(const Host& host, const Bytes& bytes) {
    const HeaderPeek peek = *PeekHeader(bytes);
    if (peek.function == static_cast<std::uint8_t>(FunctionId::kSrvRqst)) {
      Hear(host, 1000, peek.xid);
      return false;
    }
    Message taken;
    taken.header.xid = peek.xid;
    taken.body = SrvAck{Error::kOk};
    const std::size_t size = Encode(taken)->size();
    traffic_.TakeMessage(taken, size, {host.address(), false, false, Transport::kUdpUnicast, kAgent}, now_);
    traffic_.Tick(now_);
    return true;
  }

  void Advance(Instant by) {
    const Instant end = now_ + by;
    while (const auto next = traffic_.NextDue(now_)) {
      if (*next > end) {
        break;
      }
      now_ = std::max(now_, *next);
      traffic_.Tick(now_);
    }
    now_ = end;
  }

  /// What came out to `host`, which is nothing but questions.
  void Count(Host& host) {
    for (const Bytes& bytes : host.Take()) {
      out_ += bytes.size();
      const Result<Message> message = Decode(bytes);
      ASSERT_TRUE(message);
      EXPECT_EQ(message->function(), FunctionId::kSrvRqst);
    }
  }

  void ExpectNoAmplifier(const std::string& name) const {
    std::cout << name << ": " << in_ << " bytes in, " << out_ << " bytes out, ratio "
              << static_cast<double>(out_) / static_cast<double>(in_) << std::endl;
    EXPECT_GT(out_, 0U);
    EXPECT_LE(out_, in_);
  }

  const std::uint16_t port_ = support::FreePort(kAgent);
  Instant now_{Seconds(100)};
  std::size_t in_ = 0;
  std::size_t out_ = 0;
  asio::io_context io_;
  std::ostringstream text_;
  Log log_{text_, std::chrono::system_clock::now};
  RecordedEvents events_;
  Registry registry_{events_};
  NoReceiver receiver_;
  Listeners listeners_{io_, receiver_, {}};
  DirectoryTraffic traffic_{io_,  listeners_,           registry_,
                            log_, [] { return 4711U; }, [](std::span<const std::uint8_t>, const Sender&) {},
                            [] {}};
};

TEST_F(ForgedAdvertisementTest, OneBringsOneQuestionThatIsNotLonger) {
  Host host("127.0.2.1", port_);
  Hear(host, 1000);
  Advance(Seconds(100));
  Count(host);
  ExpectNoAmplifier("one advertisement");
  EXPECT_THAT(traffic_.KnownAgents({}, now_), IsEmpty());
}

TEST_F(ForgedAdvertisementTest, ManyStartsOfOneBringNoMore) {
  Host host("127.0.2.1", port_);
  for (std::uint32_t boot = 1; boot <= 300; ++boot) {
    Hear(host, boot);
    Advance(Instant(100));
    Count(host);
  }
  ExpectNoAmplifier("three hundred starts of one");
  EXPECT_THAT(traffic_.KnownAgents({}, now_), IsEmpty());
}

TEST_F(ForgedAdvertisementTest, ManyHostsBringNoMore) {
  std::vector<std::unique_ptr<Host>> hosts;
  for (int i = 1; i <= 100; ++i) {
    hosts.push_back(std::make_unique<Host>("127.0.2." + std::to_string(i), port_));
    Hear(*hosts.back(), 1000);
  }
  Advance(Seconds(100));
  for (const auto& host : hosts) {
    Count(*host);
  }
  ExpectNoAmplifier("a hundred hosts");
  EXPECT_THAT(traffic_.KnownAgents({}, now_), IsEmpty());
}

TEST_F(ForgedAdvertisementTest, AKnownAgentIsNotToldEverythingAnewByOthers) {
  Host host("127.0.2.1", port_);
  Hear(host, 1000);
  Advance(Seconds(1));
  const std::vector<Bytes> questions = host.Take(Seconds(5));
  ASSERT_EQ(questions.size(), 1U);
  EXPECT_THAT(traffic_.KnownAgents({}, now_), IsEmpty());
  Hear(host, 1000, PeekHeader(questions.front())->xid);
  EXPECT_THAT(traffic_.KnownAgents({}, now_), ElementsAre("service:directory-agent://127.0.2.1"));
  for (int told = 0; told < kOwnServices;) {
    Advance(Instant(1000));
    const std::vector<Bytes> messages = host.Take(Seconds(5));
    ASSERT_FALSE(messages.empty());
    told += Answer(host, messages.front()) ? 1 : 0;
  }
  host.Take();
  in_ = 0;
  for (std::uint32_t boot = 0; boot < 300; ++boot) {
    Hear(host, boot % 2 == 0 ? 0 : 1000 + boot);
    for (const Bytes& question : host.Take()) {
      out_ += question.size();
      EXPECT_EQ(Decode(question)->function(), FunctionId::kSrvRqst);
      Answer(host, question);
    }
    Advance(Instant(100));
  }
  ExpectNoAmplifier("three hundred starts and ends of one that is known");
  EXPECT_EQ(traffic_.KnownAgents({}, now_).size(), 1U);
}

}  // namespace
}  // namespace slp
