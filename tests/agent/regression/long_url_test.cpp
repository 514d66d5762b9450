// URLs as long as a message can carry, in replies and registrations, and longer ones than the reply that they
// claim to stand in.
#include <gtest/gtest.h>

#include "agent/api/api_fixture.h"
#include "agent/regression/loopback_daemon.h"
#include "agent/slpd/daemon_logic.h"
#include "agent/slpd_server/client.h"

namespace slp {

static std::string LongUrl(std::size_t length) {
  std::string url = "service:x://h/";
  url.resize(length, 'u');
  return url;
}

namespace {

TEST(LongUrlTest, TheLongestIsStoredAndFoundOverTcpAndLeftToItByADatagram) {
  LoopbackDaemon daemon;
  const std::string url = LongUrl(0xFFFF);
  Message registration = MakeMessage(MakeSrvReg(url, "service:x"));
  registration.header.fresh = true;
  const Bytes request = *Encode(MakeMessage(MakeSrvRqst("service:x")));
  TcpClient client(daemon.tcp());
  ASSERT_TRUE(client.Send(*Encode(registration)));
  EXPECT_EQ(client.Receive(), *Encode(MakeMessage(SrvAck{})));
  ASSERT_TRUE(client.Send(request));
  const std::optional<Bytes> reply = client.Receive();
  ASSERT_TRUE(reply);
  EXPECT_EQ(Decode(*reply)->body, Body(SrvRply{Error::kOk, {{3600, url, {}}}}));

  Message bare = MakeMessage(SrvRply{});
  bare.header.overflow = true;
  EXPECT_EQ(AskUdp(daemon.udp(), request), *Encode(bare));
}

}  // namespace
}  // namespace slp

namespace slp::support {
namespace {

class LongUrlInAReplyTest : public ApiTest {
 protected:
  LongUrlInAReplyTest() { AskOnly("127.0.0.1"); }

  SearchOutcome FindAtPeer(Bytes (*reply)(const PeerRequest&)) {
    SlpPeer peer(
        [reply](const PeerRequest& request) { return std::vector<PeerReply>{{.bytes = reply(request)}}; },
        AtPort());
    return FindServices("service:x");
  }
};

TEST_F(LongUrlInAReplyTest, ReachesTheApplicationWhole) {
  const std::string url = LongUrl(60'000);
  EXPECT_EQ(FindAtPeer([](const PeerRequest& request) {
              return EncodedReplyTo(request, UrlReply({LongUrl(60'000)}));
            }),
            (SearchOutcome{SLP_OK, {"0 " + url + " 60", kLastServiceCall}}));
}

TEST_F(LongUrlInAReplyTest, BeyondTheReplysEndReachesItNotAtAll) {
  Set("net.slp.unicastMaximumWait", "600");
  const SearchOutcome outcome = FindAtPeer([](const PeerRequest& request) {
    Bytes bytes = EncodedReplyTo(request, UrlReply({LongUrl(100)}));
    // The length of the URL, behind header, error, count, reserved byte and lifetime.
    bytes[23] = 0xFF;
    bytes[24] = 0xFF;
    return bytes;
  });
  EXPECT_NE(outcome.result, SLP_OK);
  for (const std::string& call : outcome.calls) {
    EXPECT_EQ(call.find("service:"), std::string::npos) << call;
  }
}

}  // namespace
}  // namespace slp::support
