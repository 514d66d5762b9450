#include "slpd/server/listeners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

#include "agent/slpd_server/bytes.h"
#include "agent/slpd_server/client.h"
#include "agent/slpd_server/loop_thread.h"
#include "net/addresses.h"
#include "support/free_port.h"
#include "support/under_wine/under_wine.h"
#include "support/wait_until.h"

namespace slp {
namespace {

using kelsd::support::WaitUntil;
using support::FreePort;

using asio::ip::make_address;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// Answers as the test says, with what it was sent if the test says nothing, and remembers what was dropped.
class ScriptedReceiver : public MessageReceiver {
 public:
  using Script = std::function<std::optional<Bytes>(std::span<const std::uint8_t>, const Sender&)>;

  milliseconds WaitBefore(std::span<const std::uint8_t>, const Sender&) override {
    const std::lock_guard lock(mutex_);
    const milliseconds wait = waits_.empty() ? milliseconds(0) : waits_.back();
    waits_.resize(waits_.empty() ? 0 : waits_.size() - 1);
    return wait;
  }

  std::optional<Bytes> OnMessage(std::span<const std::uint8_t> message, const Sender& sender) override {
    const std::lock_guard lock(mutex_);
    last_sender_ = sender;
    return script_ ? script_(message, sender) : Bytes(message.begin(), message.end());
  }

  void OnDropped(std::string_view reason, std::size_t, const Sender&) override {
    const std::lock_guard lock(mutex_);
    dropped_.emplace_back(reason);
  }

  /// What messages have to wait, the last one first.
  void SetWaits(std::vector<milliseconds> waits) {
    const std::lock_guard lock(mutex_);
    waits_ = std::move(waits);
  }

  bool AllWaitsBegan() {
    const std::lock_guard lock(mutex_);
    return waits_.empty();
  }

  void SetScript(Script script) {
    const std::lock_guard lock(mutex_);
    script_ = std::move(script);
  }

  Sender last_sender() {
    const std::lock_guard lock(mutex_);
    return last_sender_;
  }

  std::vector<std::string> dropped() {
    const std::lock_guard lock(mutex_);
    return dropped_;
  }

 private:
  std::mutex mutex_;
  Script script_;
  std::vector<milliseconds> waits_;
  Sender last_sender_;
  std::vector<std::string> dropped_;
};

class ListenersTest : public testing::Test {
 protected:
  ~ListenersTest() override {
    loop_.Do([this] { listeners_.reset(); });
  }

  void Serve(const ConnectionLimits& limits = {}) {
    loop_.Do([&] { listeners_ = std::make_unique<Listeners>(loop_.io(), receiver_, limits); });
    ASSERT_TRUE(Apply(plan_));
    ASSERT_THAT(problems_, IsEmpty());
  }

  bool Apply(const ListenPlan& plan) {
    problems_.clear();
    return loop_.Do([&] { return listeners_->Apply(plan, problems_); });
  }

  std::size_t Connections() {
    return loop_.Do([this] { return listeners_->connections().size(); });
  }

  // Whether there come to be so many connections; only the other thread knows when.
  bool ConnectionsBecome(std::size_t count) {
    return WaitUntil([&] { return Connections() == count; });
  }

  asio::ip::udp::endpoint Udp() const { return {make_address("127.0.0.1"), plan_.port}; }
  asio::ip::tcp::endpoint Tcp() const { return {make_address("127.0.0.1"), plan_.port}; }

  ScriptedReceiver receiver_;
  LoopThread loop_;
  std::unique_ptr<Listeners> listeners_;
  ListenPlan plan_{{{make_address("127.0.0.1"), "lo", true}}, FreePort(), 255, {}};
  std::vector<std::string> problems_;
  const Bytes request_ = BytesOf(7, SrvTypeRqst{});
};

TEST_F(ListenersTest, AnswersDatagramsFromTheServedAddress) {
  Serve();
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
  const Sender sender = receiver_.last_sender();
  EXPECT_EQ(sender.address, make_address("127.0.0.1"));
  EXPECT_EQ(sender.local, make_address("127.0.0.1"));
  EXPECT_EQ(sender.transport, Transport::kUdpUnicast);
}

TEST_F(ListenersTest, AnswersTheGroupFromTheInterfacesOwnAddress) {
  Serve();
  asio::ip::udp::endpoint replier;
  EXPECT_EQ(AskGroup({kMulticastGroup, plan_.port}, request_, replier), request_);
  EXPECT_EQ(replier, Udp());
  const Sender sender = receiver_.last_sender();
  EXPECT_EQ(sender.local, make_address("127.0.0.1"));
  EXPECT_EQ(sender.transport, Transport::kUdpMulticast);
}

TEST_F(ListenersTest, APlaceOutsideTheGroupDoesNotHearIt) {
  plan_.places[0].group = false;
  Serve();
  asio::ip::udp::endpoint replier;
  EXPECT_EQ(AskGroup({kMulticastGroup, plan_.port}, request_, replier, 200), std::nullopt);
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
}

TEST_F(ListenersTest, DatagramsOfAnySizeAndContentDoNoHarm) {
  Serve();
  receiver_.SetScript([](std::span<const std::uint8_t> message, const Sender&) -> std::optional<Bytes> {
    return message.size() < 100 ? std::nullopt : std::optional(Bytes(message.begin(), message.end()));
  });
  EXPECT_EQ(AskUdp(Udp(), {}, 50), std::nullopt);
  EXPECT_EQ(AskUdp(Udp(), {0xFF}, 50), std::nullopt);
  const Bytes long_datagram(65507, 0x02);
  EXPECT_EQ(AskUdp(Udp(), long_datagram), long_datagram);
}

TEST_F(ListenersTest, APeerThatIsGoneWhenItsAnswerComesCostsNothing) {
  Serve();
  for (int i = 0; i < 50; ++i) {
    asio::io_context io;
    asio::ip::udp::socket socket(io, {make_address("127.0.0.1"), 0});
    socket.send_to(asio::buffer(request_), Udp());
  }
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
}

TEST_F(ListenersTest, AnAnswerThatDoesNotFitADatagramIsTold) {
  Serve();
  receiver_.SetScript([](auto, const Sender&) { return Bytes(70'000); });
  EXPECT_EQ(AskUdp(Udp(), request_, 100), std::nullopt);
  EXPECT_TRUE(WaitUntil([this] { return !receiver_.dropped().empty(); }));
  EXPECT_THAT(receiver_.dropped(), ElementsAre("the answer could not be sent"));
}

TEST_F(ListenersTest, AnswersMessagesOfOneConnectionInTheirOrder) {
  Serve();
  TcpClient client(Tcp());
  const Bytes second = BytesOf(8, SrvRqst{{}, "service:x", "DEFAULT", {}, {}});
  const Bytes third = BytesOf(9, SrvAck{});
  ASSERT_TRUE(client.Send(Joined(Joined(request_, second), third)));
  EXPECT_EQ(client.Receive(), request_);
  EXPECT_EQ(client.Receive(), second);
  EXPECT_EQ(client.Receive(), third);
  EXPECT_EQ(receiver_.last_sender().transport, Transport::kTcp);
  ASSERT_TRUE(client.Send(second));
  EXPECT_EQ(client.Receive(), second) << "the connection stays open";
}

TEST_F(ListenersTest, AMessageOfAStreamWaitsUntilItCanBeAnswered) {
  Serve();
  const Bytes second = BytesOf(8, SrvRqst{{}, "service:x", "DEFAULT", {}, {}});
  receiver_.SetWaits({milliseconds(50), milliseconds(100)});
  TcpClient client(Tcp());
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(client.Send(Joined(request_, second)));
  EXPECT_EQ(client.Receive(), request_);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(150));
  EXPECT_EQ(client.Receive(), second);
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
}

TEST_F(ListenersTest, AConnectionMayEndWhileItsMessageWaits) {
  Serve();
  receiver_.SetWaits({seconds(20)});
  {
    TcpClient client(Tcp());
    ASSERT_TRUE(client.Send(request_));
    ASSERT_TRUE(WaitUntil([this] { return receiver_.AllWaitsBegan(); }));
  }
  loop_.Do([this] { listeners_.reset(); });
  EXPECT_THAT(receiver_.dropped(), IsEmpty());
}

TEST_F(ListenersTest, AMessageMayComeInPieces) {
  Serve();
  TcpClient client(Tcp());
  for (const std::uint8_t byte : request_) {
    ASSERT_TRUE(client.Send({byte}));
  }
  EXPECT_EQ(client.Receive(), request_);
}

TEST_F(ListenersTest, MessagesWithoutAnswerDoNotEndAConnection) {
  Serve();
  receiver_.SetScript([](std::span<const std::uint8_t> message, const Sender&) -> std::optional<Bytes> {
    return PeekHeader(message)->xid == 0 ? std::nullopt
                                         : std::optional(Bytes(message.begin(), message.end()));
  });
  TcpClient client(Tcp());
  Bytes flood;
  for (int i = 0; i < 2000; ++i) {
    flood = Joined(flood, BytesOf(0, SrvAck{}));
  }
  ASSERT_TRUE(client.Send(Joined(flood, request_)));
  EXPECT_EQ(client.Receive(), request_);
}

TEST_F(ListenersTest, TheLongestMessageComesThroughInBothDirections) {
  Serve();
  Bytes message = HeaderClaiming(kMaximumMessageLength);
  message.resize(kMaximumMessageLength, 0x55);
  TcpClient client(Tcp());
  std::thread sender([&] { client.Send(message); });
  sender.join();
  EXPECT_EQ(client.Receive(), message);
  ASSERT_TRUE(client.Send(request_));
  EXPECT_EQ(client.Receive(), request_);
  EXPECT_LT(loop_.Do([this] { return listeners_->connections().accounts().bytes(); }), 64U * 1024)
      << "the memory is given back";
}

TEST_F(ListenersTest, AMessageOverTheLimitEndsTheConnection) {
  ConnectionLimits limits;
  limits.message_bytes = 1000;
  Serve(limits);
  TcpClient client(Tcp());
  ASSERT_TRUE(client.Send(HeaderClaiming(1001)));
  EXPECT_TRUE(client.IsClosed());
  EXPECT_THAT(receiver_.dropped(), ElementsAre("a message over the size limit"));
}

TEST_F(ListenersTest, WhatIsNoMessageIsAnsweredOnceAndEndsTheConnection) {
  Serve();
  receiver_.SetScript([this](auto, const Sender&) { return request_; });
  TcpClient client(Tcp());
  ASSERT_TRUE(client.Send({'G', 'E', 'T', ' ', '/', ' ', 'H', 'T', 'T', 'P', '/', '1'}));
  EXPECT_EQ(client.Receive(), request_);
  EXPECT_TRUE(client.IsClosed());
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(ListenersTest, AnIdleConnectionIsClosedAndNotTalkedAbout) {
  ConnectionLimits limits;
  limits.idle = milliseconds(50);
  Serve(limits);
  // One whose thread is kept waiting for as long before it asks is idle, too.
  EXPECT_TRUE(WaitUntil([&] {
    TcpClient client(Tcp());
    return client.Send(request_) && client.Receive() == request_ && client.IsClosed();
  }));
  EXPECT_THAT(receiver_.dropped(), IsEmpty());
}

TEST_F(ListenersTest, BytesThatDripInDoNotProlongAMessage) {
  ConnectionLimits limits;
  limits.message = milliseconds(150);
  Serve(limits);
  TcpClient client(Tcp());
  Bytes message = HeaderClaiming(1000);
  message.resize(999);
  const auto start = std::chrono::steady_clock::now();
  for (const std::uint8_t byte : message) {
    if (!client.Send({byte})) {
      break;
    }
    std::this_thread::sleep_for(milliseconds(2));  // the drip is what is tested
  }
  EXPECT_TRUE(client.IsClosed());
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(150));
  EXPECT_THAT(receiver_.dropped(), ElementsAre("a message that took too long to come"));
}

TEST_F(ListenersTest, APeerThatDoesNotReadIsLeftAndHoldsUpNobody) {
  ConnectionLimits limits;
  limits.reply = milliseconds(200);
  Serve(limits);
  const Bytes long_reply(kMaximumMessageLength, 0x02);
  receiver_.SetScript([&](std::span<const std::uint8_t> message, const Sender&) {
    return PeekHeader(message)->xid == 1 ? long_reply : Bytes(message.begin(), message.end());
  });
  TcpClient slow(Tcp());
  ASSERT_TRUE(slow.Send(Joined(BytesOf(1, SrvAck{}), BytesOf(1, SrvAck{}))));
  TcpClient other(Tcp());
  ASSERT_TRUE(other.Send(request_));
  EXPECT_EQ(other.Receive(), request_);
  EXPECT_TRUE(ConnectionsBecome(1)) << "only the other one's";
  EXPECT_THAT(receiver_.dropped(), ElementsAre("an answer that was not fetched in time"));
}

TEST_F(ListenersTest, APeerHasSoManyConnectionsAndOthersHaveTheirs) {
  ConnectionLimits limits;
  limits.connections_per_peer = 2;
  Serve(limits);
  TcpClient first(Tcp());
  TcpClient second(Tcp());
  ASSERT_TRUE(ConnectionsBecome(2));
  TcpClient third(Tcp());
  EXPECT_TRUE(third.IsClosed());
  EXPECT_THAT(receiver_.dropped(), ElementsAre("too many connections of this peer"));
  TcpClient other_peer(Tcp(), "127.0.0.2");
  ASSERT_TRUE(other_peer.Send(request_));
  EXPECT_EQ(other_peer.Receive(), request_);
  ASSERT_TRUE(first.Send(request_));
  EXPECT_EQ(first.Receive(), request_);
}

TEST_F(ListenersTest, TheLongestIdleConnectionMakesRoomWhenAllPlacesAreTaken) {
  ConnectionLimits limits;
  limits.connections = 2;
  Serve(limits);
  TcpClient first(Tcp());
  TcpClient second(Tcp(), "127.0.0.2");
  ASSERT_TRUE(ConnectionsBecome(2));
  ASSERT_TRUE(first.Send(request_));
  EXPECT_EQ(first.Receive(), request_) << "now the second one is idle for longer";
  TcpClient third(Tcp(), "127.0.0.3");
  ASSERT_TRUE(third.Send(request_));
  EXPECT_EQ(third.Receive(), request_);
  EXPECT_TRUE(second.IsClosed());
  ASSERT_TRUE(first.Send(request_));
  EXPECT_EQ(first.Receive(), request_);
}

TEST_F(ListenersTest, AConnectionInTheMiddleOfAMessageDoesNotMakeRoom) {
  ConnectionLimits limits;
  limits.connections = 1;
  Serve(limits);
  const auto busy = [this] {
    return loop_.Do([this] { return listeners_->connections().accounts().bytes(); }) > 0;
  };
  TcpClient first(Tcp());
  ASSERT_TRUE(first.Send({request_.begin(), request_.end() - 1}));
  while (!busy()) {
    std::this_thread::yield();
  }
  TcpClient second(Tcp(), "127.0.0.2");
  EXPECT_TRUE(second.IsClosed());
  EXPECT_THAT(receiver_.dropped(), ElementsAre("too many connections"));
  ASSERT_TRUE(first.Send({request_.back()}));
  EXPECT_EQ(first.Receive(), request_);
}

TEST_F(ListenersTest, WhatAPeerMakesTheDaemonHoldIsBounded) {
  ConnectionLimits limits;
  limits.bytes_per_peer = 256 * 1024;
  Serve(limits);
  Bytes message = HeaderClaiming(kMaximumMessageLength);
  message.resize(1024 * 1024);
  TcpClient client(Tcp());
  client.Send(message);
  EXPECT_TRUE(client.IsClosed());
  EXPECT_THAT(receiver_.dropped(), ElementsAre("too much held for this peer"));
  EXPECT_EQ(loop_.Do([this] { return listeners_->connections().accounts().bytes(); }), 0U);
}

TEST_F(ListenersTest, AConnectionThatEndsInsideAMessageIsTold) {
  Serve();
  {
    TcpClient client(Tcp());
    ASSERT_TRUE(client.Send({2, 1, 0}));
    ASSERT_TRUE(ConnectionsBecome(1));
  }
  EXPECT_TRUE(ConnectionsBecome(0));
  EXPECT_THAT(receiver_.dropped(), ElementsAre("the connection ended inside a message"));
}

TEST_F(ListenersTest, ABadInterfaceCostsTheOthersNothing) {
  Serve();
  ListenPlan plan = plan_;
  plan.places.push_back({make_address("192.0.2.1"), "eth9", true});
  EXPECT_TRUE(Apply(plan));
  EXPECT_THAT(problems_, ElementsAre(StartsWith("cannot serve UDP 192.0.2.1:" + std::to_string(plan.port) +
                                                " (eth9): ")));
  EXPECT_THAT(loop_.Do([this] { return listeners_->ServedAddresses(); }), ElementsAre("127.0.0.1"));
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
}

TEST_F(ListenersTest, AnotherPortMovesTheSocketsAndCutsNoConnection) {
  Serve();
  const asio::ip::udp::endpoint before = Udp();
  TcpClient client(Tcp());
  ASSERT_TRUE(ConnectionsBecome(1));
  plan_.port = FreePort();
  ASSERT_TRUE(Apply(plan_));
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
  EXPECT_EQ(AskUdp(before, request_, 50), std::nullopt);
  ASSERT_TRUE(client.Send(request_));
  EXPECT_EQ(client.Receive(), request_);
}

TEST_F(ListenersTest, APlanOfWhichNothingCanBeOpenedChangesNothing) {
  Serve();
  asio::io_context io;
  const asio::ip::udp::socket holder(io, {make_address("127.0.0.1"), 0});
  ListenPlan plan = plan_;
  plan.port = holder.local_endpoint().port();
  EXPECT_FALSE(Apply(plan));
  const asio::error_code in_use = asio::error::address_in_use;
  EXPECT_THAT(problems_,
              ElementsAre(StartsWith("cannot serve UDP 127.0.0.1:" + std::to_string(plan.port) +
                                     " (lo): " + in_use.message() + "; another SLP agent may be running")));
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
}

TEST_F(ListenersTest, AGroupIsJoinedAndLeftWithoutNewSockets) {
  plan_.places[0].group = false;
  Serve();
  plan_.places[0].group = true;
  ASSERT_TRUE(Apply(plan_));
  asio::ip::udp::endpoint replier;
  EXPECT_EQ(AskGroup({kMulticastGroup, plan_.port}, request_, replier), request_);
  plan_.places[0].group = false;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_EQ(AskGroup({kMulticastGroup, plan_.port}, request_, replier, 200), std::nullopt);
}

TEST_F(ListenersTest, TwoAgentsOnTwoLoopbackAddressesShareThePort) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  Serve();
  ScriptedReceiver other_receiver;
  const Bytes other_answer = BytesOf(99, SrvAck{});
  other_receiver.SetScript([&](auto, const Sender&) { return other_answer; });
  std::unique_ptr<Listeners> other;
  ListenPlan plan = plan_;
  plan.places = {{make_address("127.0.0.2"), "lo", true}};
  ASSERT_TRUE(loop_.Do([&] {
    other = std::make_unique<Listeners>(loop_.io(), other_receiver, ConnectionLimits{});
    return other->Apply(plan, problems_);
  }));
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_EQ(AskUdp({make_address("127.0.0.2"), plan.port}, request_), other_answer);
  EXPECT_EQ(AskUdp(Udp(), request_), request_);
  loop_.Do([&] { other.reset(); });
}

TEST_F(ListenersTest, AfterCloseNobodyIsAnswered) {
  Serve();
  TcpClient client(Tcp());
  ASSERT_TRUE(ConnectionsBecome(1));
  loop_.Do([this] { listeners_->Close(); });
  EXPECT_TRUE(client.IsClosed());
  EXPECT_EQ(AskUdp(Udp(), request_, 50), std::nullopt);
}

}  // namespace
}  // namespace slp
