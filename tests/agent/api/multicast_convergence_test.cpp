// Searches that ask everyone: rounds, previous responders, limits, cut replies, broadcast.
#include <gmock/gmock.h>

#include <algorithm>

#include "api_fixture.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using testing::ElementsAre;
using Transport = PeerRequest::Transport;

const std::string kType = "service:printer";
const std::string kUrl = "service:printer://one:515";
const SearchOutcome kFound{SLP_OK, {"0 " + kUrl + " 60", kLastServiceCall}};
const SearchOutcome kNothing{SLP_OK, {kLastServiceCall}};

std::vector<PeerReply> Silence(const PeerRequest&) {
  return {};
}

/// An agent as it should be: silent once it is among the responders.
SlpPeer::Script Offering(const std::string& url, const std::string& address = "127.0.0.1") {
  return [=](const PeerRequest& request) {
    return PreviousResponders(request).find(address) != std::string::npos
               ? std::vector<PeerReply>()
               : std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({url}))}};
  };
}

/// What the requests to `peer`, which are so many, say. If the machine stood still before an answer, the
/// first one went out once more, which says nothing.
std::vector<std::string> ResponderLists(const SlpPeer& peer, std::size_t count) {
  std::vector<std::string> lists;
  for (const PeerRequest& request : RequestsTo(peer, count)) {
    if (lists != std::vector<std::string>{""} || !PreviousResponders(request).empty()) {
      lists.push_back(PreviousResponders(request));
    }
  }
  return lists;
}

class MulticastConvergence : public ApiTest {};

TEST_F(MulticastConvergence, SendsAFlaggedRequestToTheGroup) {
  SlpPeer peer(Offering(kUrl), AtPort());
  EXPECT_EQ(FindServices(kType, "TAMRO", "(a=1)"), kFound);
  const std::vector<PeerRequest> requests = peer.requests();
  ASSERT_FALSE(requests.empty());
  EXPECT_EQ(requests[0].transport, Transport::kGroup);
  Message request = requests[0].message.value();
  EXPECT_NE(request.header.xid, 0);
  Message expected{Header{}, SrvRqst{"", kType, "TAMRO", "(a=1)", ""}};
  expected.header.request_multicast = true;
  expected.header.xid = request.header.xid;
  EXPECT_EQ(request, expected);
}

TEST_F(MulticastConvergence, NamesResponders_KeepsTheXid_AndEndsAfterTwoQuietRounds) {
  SlpPeer peer(Offering(kUrl), AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_THAT(ResponderLists(peer, 3), ElementsAre("", "127.0.0.1", "127.0.0.1"));
  const std::uint16_t xid = peer.requests()[0].message->header.xid;
  for (const PeerRequest& request : peer.requests()) {
    EXPECT_EQ(request.message->header.xid, xid);
  }
}

TEST_F(MulticastConvergence, NobodyAnswersIsSuccessAfterTwoRounds) {
  Set("net.slp.multicastTimeouts", "50,100,1000,1000");
  SlpPeer peer(Silence, AtPort());
  ExpectTakes(150, 800, [&] { EXPECT_EQ(FindServices(kType), kNothing); });
  EXPECT_EQ(RequestsTo(peer, 2).size(), 2U);
}

TEST_F(MulticastConvergence, ALateResponderProlongsTheSearch) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  Set("net.slp.multicastTimeouts", "400,50,400,50,50");
  std::atomic<int> round = 0;
  SlpPeer first(Offering(kUrl), AtPort());
  SlpPeer second(
      [&](const PeerRequest& request) {
        return ++round < 3 ? std::vector<PeerReply>()
                           : Offering("service:printer://two", "127.0.0.2")(request);
      },
      AtPort("127.0.0.2"));
  Set("net.slp.interfaces", "127.0.0.1,127.0.0.2");
  const SearchOutcome expected{SLP_OK, {"0 " + kUrl + " 60", "0 service:printer://two 60", kLastServiceCall}};
  EXPECT_EQ(FindServices(kType), expected);
}

TEST_F(MulticastConvergence, RoundsFollowTheTimeouts) {
  Set("net.slp.multicastTimeouts", "200,300,100");
  std::atomic<int> count = 0;
  SlpPeer peer(
      [&](const PeerRequest& request) {
        const std::string url = "service:printer://" + std::to_string(++count);
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, UrlReply({url})), .from_elsewhere = count == 2}};
      },
      AtPort());
  const auto start = std::chrono::steady_clock::now();
  FindServices(kType);
  const std::vector<PeerRequest> requests = RequestsTo(peer, 3);
  ASSERT_EQ(requests.size(), 3U);
  EXPECT_GE(requests[1].arrival - start, std::chrono::milliseconds(200));
  EXPECT_GE(requests[2].arrival - start, std::chrono::milliseconds(500));
}

TEST_F(MulticastConvergence, TheMaximumWaitEndsEverything) {
  Set("net.slp.multicastTimeouts", "100,10000");
  Set("net.slp.multicastMaximumWait", "400");
  SlpPeer peer(Offering(kUrl), AtPort());
  ExpectTakes(400, 1000, [&] { EXPECT_EQ(FindServices(kType), kFound); });
}

TEST_F(MulticastConvergence, TheFirstResultDoesNotWaitForTheOthers) {
  Set("net.slp.multicastTimeouts", "3000");
  Set("net.slp.multicastMaximumWait", "3000");
  SlpPeer peer(Offering(kUrl), AtPort());
  ExpectTakes(0, 1000, [&] {
    EXPECT_EQ(FindServices(kType, "", "", 1), (SearchOutcome{SLP_OK, {"0 " + kUrl + " 60"}}));
  });
}

TEST_F(MulticastConvergence, EachUrlOnceWithTheFirstLifetime) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        SrvRply second = UrlReply({kUrl, "service:printer://two", "service:printer://two"});
        second.urls[0].lifetime = 7;
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({kUrl}))},
                                      {.bytes = EncodedReplyTo(request, UrlReply({kUrl}))},
                                      {.bytes = EncodedReplyTo(request, second),
                                       .delay = std::chrono::milliseconds(20),
                                       .from_elsewhere = true}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType),
            (SearchOutcome{SLP_OK, {"0 " + kUrl + " 60", "0 service:printer://two 60", kLastServiceCall}}));
}

TEST_F(MulticastConvergence, ASecondReplyOfTheSameSenderDoesNotCount) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, UrlReply({kUrl}))},
            {.bytes = EncodedReplyTo(request, UrlReply({"service:printer://again"})),
             .delay = std::chrono::milliseconds(20)}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(MulticastConvergence, PassesOverWhatIsNoReply) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        Message other_xid = ReplyTo(request, UrlReply({"service:printer://wrong-xid"}));
        ++other_xid.header.xid;
        Bytes cut = EncodedReplyTo(request, UrlReply({"service:printer://cut"}));
        cut.pop_back();
        return std::vector<PeerReply>{
            {.bytes = {}},
            {.bytes = Bytes(11, 2)},
            {.bytes = Bytes(65000, 0xFF)},
            {.bytes = request.bytes},
            {.bytes = cut},
            {.bytes = Encode(other_xid).value()},
            {.bytes = EncodedReplyTo(request, SrvTypeRply{Error::kOk, "service:x"})},
            {.bytes = EncodedReplyTo(request, UrlReply({kUrl})), .delay = std::chrono::milliseconds(20)}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(MulticastConvergence, AnErrorOfOneAgentIsNobodysError) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
  }
  SlpPeer unwilling(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, SrvRply{Error::kScopeNotSupported, {}})}};
      },
      AtPort("127.0.0.2"));
  SlpPeer peer(Offering(kUrl), AtPort());
  Set("net.slp.interfaces", "127.0.0.1,127.0.0.2");
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_THAT(ResponderLists(unwilling, 3).back(), testing::HasSubstr("127.0.0.2"));
}

TEST_F(MulticastConvergence, UrlsThatAreNoneAreLeftOut) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(
                 request, UrlReply({"", "service:printer://a b", std::string("service:printer://\0c", 19),
                                    "service:printer://d\n", "service:printer://e\x7F", kUrl}))}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(MulticastConvergence, ACutReplyIsDeliveredAndThenFetchedByTcpWithoutRespondersAndFlag) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        if (request.transport == Transport::kStream) {
          return std::vector<PeerReply>{
              {.bytes = EncodedReplyTo(request, UrlReply({kUrl, "service:printer://two"}))}};
        }
        Message reply = ReplyTo(request, UrlReply({kUrl}));
        reply.header.overflow = true;
        return std::vector<PeerReply>{{.bytes = Encode(reply).value()}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType),
            (SearchOutcome{SLP_OK, {"0 " + kUrl + " 60", "0 service:printer://two 60", kLastServiceCall}}));
  const std::vector<PeerRequest> requests = peer.requests();
  // On a busy machine the next round may come before the connection.
  const auto by_stream = std::find_if(requests.begin(), requests.end(), [](const PeerRequest& request) {
    return request.transport == Transport::kStream;
  });
  ASSERT_NE(by_stream, requests.end());
  Message expected = requests[0].message.value();
  expected.header.request_multicast = false;
  EXPECT_EQ(by_stream->message.value(), expected);
}

TEST_F(MulticastConvergence, RespondersThatNoLongerFitEndTheRounds) {
  Set("net.slp.MTU", "576");
  Set("net.slp.multicastTimeouts", "500,500");
  // 16 bytes of header, five lengths, the scope DEFAULT; ten bytes are left for responders, one too few.
  const std::string type = "service:" + std::string(576 - 16 - 10 - 7 - 8 - 8, 'p');
  SlpPeer peer(Offering(kUrl), AtPort());
  EXPECT_EQ(FindServices(type), kFound);
  EXPECT_THAT(ResponderLists(peer, 1), ElementsAre(""));
}

TEST_F(MulticastConvergence, ARequestLongerThanTheMtuIsRefused) {
  SlpPeer peer(Offering(kUrl), AtPort());
  EXPECT_EQ(FindServices("service:" + std::string(1400, 'p')),
            (SearchOutcome{SLP_BUFFER_OVERFLOW, {"-18 (null) 0", kLastServiceCall}}));
  EXPECT_TRUE(peer.requests().empty());
}

TEST_F(MulticastConvergence, NoInterface) {
  Set("net.slp.interfaces", "no-such-interface");
  EXPECT_EQ(FindServices(kType),
            (SearchOutcome{SLP_NETWORK_INIT_FAILED, {"-20 (null) 0", kLastServiceCall}}));
}

TEST_F(MulticastConvergence, LeavesByTheInterfacesOfTheHandle) {
  Set("net.slp.interfaces", "no-such-interface");
  EXPECT_EQ(SLPAssociateIFList(handle_, "127.0.0.1"), SLP_OK);
  SlpPeer peer(Offering(kUrl), AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(MulticastConvergence, AFloodDoesNotOutlastTheMaximumWait) {
  Set("net.slp.multicastMaximumWait", "300");
  SlpPeer peer(
      [](const PeerRequest&) {
        std::vector<PeerReply> garbage;
        for (int i = 0; i < 2000; ++i) {
          garbage.push_back({.bytes = Bytes(100, 0xA5), .delay = std::chrono::milliseconds(i)});
        }
        return garbage;
      },
      AtPort());
  ExpectTakes(0, 1000, [&] { EXPECT_EQ(FindServices(kType), kNothing); });
}

TEST_F(MulticastConvergence, BroadcastOnlyAsksTheBroadcastAddress) {
  PeerOptions options = AtPort("0.0.0.0");
  options.group = false;
  SlpPeer peer(Offering(kUrl), options);
  Set("net.slp.isBroadcastOnly", "true");
  Set("net.slp.broadcastAddr", "127.255.255.255");
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_THAT(ResponderLists(peer, 3), ElementsAre("", "127.0.0.1", "127.0.0.1"));
  EXPECT_TRUE(peer.requests()[0].message->header.request_multicast);
  // Under Wine a socket that is bound to every address hears the groups that others have joined.
  if (!kelsd::support::UnderWine()) {
    Set("net.slp.isBroadcastOnly", "false");
    EXPECT_EQ(FindServices(kType), kNothing);
  }
}

struct ResultLimit {
  const char* maximum;
  std::vector<std::string> calls;
};

class ResultLimits : public MulticastConvergence, public testing::WithParamInterface<ResultLimit> {};

TEST_P(ResultLimits, EndTheSearch) {
  Set("net.slp.maxResults", GetParam().maximum);
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes =
                 EncodedReplyTo(request, UrlReply({"service:a://1", "service:a://2", "service:a://3"}))}};
      },
      AtPort());
  EXPECT_EQ(FindServices("service:a"), (SearchOutcome{SLP_OK, GetParam().calls}));
}

INSTANTIATE_TEST_SUITE_P(
    MulticastConvergence, ResultLimits,
    testing::Values(
        ResultLimit{"1", {"0 service:a://1 60", kLastServiceCall}},
        ResultLimit{"2", {"0 service:a://1 60", "0 service:a://2 60", kLastServiceCall}},
        ResultLimit{"3",
                    {"0 service:a://1 60", "0 service:a://2 60", "0 service:a://3 60", kLastServiceCall}},
        ResultLimit{"-1",
                    {"0 service:a://1 60", "0 service:a://2 60", "0 service:a://3 60", kLastServiceCall}},
        ResultLimit{"0",
                    {"0 service:a://1 60", "0 service:a://2 60", "0 service:a://3 60", kLastServiceCall}}));

}  // namespace
}  // namespace slp::support
