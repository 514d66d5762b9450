// A reply of no bytes is none: a message without an answer leaves its connection to the next one instead of a
// reply of length 0 that is sent again and again; and an empty datagram is answered by nobody, so that two
// agents never send each other such for ever.
#include <gtest/gtest.h>

#include <chrono>

#include "agent/api/api_fixture.h"
#include "agent/regression/loopback_daemon.h"
#include "agent/slpd/daemon_logic.h"
#include "agent/slpd_server/client.h"

namespace slp {
namespace {

using std::chrono::milliseconds;

TEST(EmptyReplyTest, AfterMessagesWithoutAnAnswerTheNextOneHasItsOwn) {
  LoopbackDaemon daemon;
  TcpClient client(daemon.tcp());
  const Bytes no_request = *Encode(MakeMessage(SrvRply{}));
  const Bytes request = *Encode(MakeMessage(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}));
  for (int round = 0; round < 100; ++round) {
    ASSERT_TRUE(client.Send(no_request));
    ASSERT_TRUE(client.Send(no_request));
    ASSERT_TRUE(client.Send(request));
    ASSERT_EQ(client.Receive(), *Encode(MakeMessage(SrvTypeRply{})));
  }
}

TEST(EmptyReplyTest, AnEmptyDatagramIsNotAnswered) {
  LoopbackDaemon daemon;
  // Long enough for an answer over loopback, which takes a millisecond.
  EXPECT_EQ(AskUdp(daemon.udp(), {}, 200), std::nullopt);
  EXPECT_EQ(AskUdp(daemon.udp(), {2}, 200), std::nullopt);
  EXPECT_TRUE(AskUdp(daemon.udp(), *Encode(MakeMessage(MakeSrvRqst("service:x")))));
}

}  // namespace
}  // namespace slp

namespace slp::support {
namespace {

class EmptyReplyToAClientTest : public ApiTest {};

TEST_F(EmptyReplyToAClientTest, ItWaitsForTheRealOne) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = {}}, {.bytes = {}}, {.bytes = EncodedReplyTo(request, UrlReply({"service:x://h"}))}};
      },
      AtPort());
  AskOnly("127.0.0.1");
  EXPECT_EQ(FindServices("service:x"), (SearchOutcome{SLP_OK, {"0 service:x://h 60", kLastServiceCall}}));
}

TEST_F(EmptyReplyToAClientTest, OneThatNeverComesEndsInTime) {
  SlpPeer peer([](const PeerRequest&) { return std::vector<PeerReply>(50, PeerReply{}); }, AtPort());
  AskOnly("127.0.0.1");
  Set("net.slp.unicastMaximumWait", "600");
  SearchOutcome outcome;
  ExpectTakes(600, 3000, [&] { outcome = FindServices("service:x"); });
  EXPECT_EQ(outcome, (SearchOutcome{SLP_NETWORK_TIMED_OUT, {"-19 (null) 0", kLastServiceCall}}));
}

}  // namespace
}  // namespace slp::support
