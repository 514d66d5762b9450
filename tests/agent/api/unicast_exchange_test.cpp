// Requests to one agent: retransmission, replies that are none, cut replies and TCP, the time limits.
#include <gmock/gmock.h>

#include "api_fixture.h"
#include "support/ipv6.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using testing::ElementsAre;
using Transport = PeerRequest::Transport;

const std::string kType = "service:printer";
const std::string kUrl = "service:printer://one:515";
const std::string kLongType = "service:" + std::string(2000, 'p');

class UnicastExchange : public ApiTest {
 protected:
  UnicastExchange() { AskOnly("127.0.0.1"); }

  static const SearchOutcome kFound;
  static const SearchOutcome kTimedOut;

  static std::vector<Transport> Transports(const SlpPeer& peer) {
    std::vector<Transport> transports;
    for (const PeerRequest& request : peer.requests()) {
      transports.push_back(request.transport);
    }
    return transports;
  }
};

const SearchOutcome UnicastExchange::kFound{SLP_OK, {"0 " + kUrl + " 60", kLastServiceCall}};
const SearchOutcome UnicastExchange::kTimedOut{SLP_NETWORK_TIMED_OUT, {"-19 (null) 0", kLastServiceCall}};

std::vector<PeerReply> Found(const PeerRequest& request) {
  return {{.bytes = EncodedReplyTo(request, UrlReply({kUrl}))}};
}

PeerReply Overflowed(const PeerRequest& request, const std::vector<std::string>& urls = {}) {
  Message reply = ReplyTo(request, UrlReply(urls));
  reply.header.overflow = true;
  return {.bytes = Encode(reply).value()};
}

TEST_F(UnicastExchange, SendsTheRequestAndDeliversTheReply) {
  SlpPeer peer(Found, AtPort());
  EXPECT_EQ(FindServices(kType, "TAMRO", "(a=1)"), kFound);
  ASSERT_EQ(peer.requests().size(), 1U);
  Message request = peer.requests()[0].message.value();
  EXPECT_NE(request.header.xid, 0);
  request.header.xid = 0;
  EXPECT_EQ(request, (Message{Header{}, SrvRqst{"", kType, "TAMRO", "(a=1)", ""}}));
}

TEST_F(UnicastExchange, RepeatsTheSameRequestUntilAReplyComes) {
  Set("net.slp.unicastTimeouts", "60,60,60,5000");
  std::atomic<int> count = 0;
  SlpPeer peer(
      [&](const PeerRequest& request) { return ++count < 4 ? std::vector<PeerReply>() : Found(request); },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
  const std::vector<PeerRequest> requests = peer.requests();
  ASSERT_EQ(requests.size(), 4U);
  for (const PeerRequest& request : requests) {
    EXPECT_EQ(request.bytes, requests[0].bytes);
  }
}

TEST_F(UnicastExchange, WaitsBetweenTriesAsConfigured) {
  Set("net.slp.unicastTimeouts", "40,80,160");
  SlpPeer peer([](const PeerRequest&) { return std::vector<PeerReply>(); }, AtPort());
  const auto start = std::chrono::steady_clock::now();
  ExpectTakes(280, 1000, [&] { EXPECT_EQ(FindServices(kType), kTimedOut); });
  const std::vector<PeerRequest> requests = RequestsTo(peer, 3);
  ASSERT_EQ(requests.size(), 3U);
  // Each of them may be noticed late, so that two of them tell nothing of what is between.
  EXPECT_GE(requests[1].arrival - start, std::chrono::milliseconds(40));
  EXPECT_GE(requests[2].arrival - start, std::chrono::milliseconds(120));
}

TEST_F(UnicastExchange, SilenceEndsAfterTheMaximumWait) {
  Set("net.slp.unicastTimeouts", "20,10000");
  Set("net.slp.unicastMaximumWait", "300");
  const std::size_t requests = WhereTheMachineGoesOn([this] {
    SlpPeer peer([](const PeerRequest&) { return std::vector<PeerReply>(); }, AtPort());
    ExpectTakes(300, 1000, [&] { EXPECT_EQ(FindServices(kType), kTimedOut); });
    return RequestsTo(peer, 2).size();
  });
  EXPECT_EQ(requests, 2U);
}

TEST_F(UnicastExchange, AHostWithoutAgentIsNoticedAtOnce) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kRefusalsUnheard;
  }
  Set("net.slp.unicastTimeouts", "5000");
  ExpectTakes(0, 1000, [&] { EXPECT_EQ(FindServices(kType), kTimedOut); });
}

TEST_F(UnicastExchange, PassesOverWhatIsNoReply) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        Message other_xid = ReplyTo(request, UrlReply({"service:printer://wrong-xid"}));
        ++other_xid.header.xid;
        Bytes other_version = EncodedReplyTo(request, UrlReply({"service:printer://version"}));
        other_version[0] = 1;
        Bytes cut = EncodedReplyTo(request, UrlReply({"service:printer://cut"}));
        cut.pop_back();
        const Bytes elsewhere = EncodedReplyTo(request, UrlReply({"service:printer://elsewhere"}));
        return std::vector<PeerReply>{
            {.bytes = {}},
            {.bytes = {2}},
            {.bytes = Bytes(60000, 0xFF)},
            {.bytes = request.bytes},
            {.bytes = cut},
            {.bytes = other_version},
            {.bytes = Encode(other_xid).value()},
            {.bytes = EncodedReplyTo(request, AttrRply{Error::kOk, "(a=1)", {}})},
            {.bytes = EncodedReplyTo(request, SrvAck{Error::kParseError})},
            {.bytes = elsewhere, .from_elsewhere = true},
            {.bytes = EncodedReplyTo(request, UrlReply({kUrl})), .delay = std::chrono::milliseconds(20)}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(UnicastExchange, AFloodOfGarbageDoesNotOutlastTheMaximumWait) {
  Set("net.slp.unicastTimeouts", "200");
  SlpPeer peer(
      [](const PeerRequest&) {
        std::vector<PeerReply> garbage;
        for (int i = 0; i < 2000; ++i) {
          garbage.push_back({.bytes = Bytes(100, 0xA5), .delay = std::chrono::milliseconds(i)});
        }
        return garbage;
      },
      AtPort());
  ExpectTakes(200, 1000, [&] { EXPECT_EQ(FindServices(kType), kTimedOut); });
}

TEST_F(UnicastExchange, ASecondCopyOfTheReplyDoesNoHarm) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        std::vector<PeerReply> replies = Found(request);
        replies.push_back(replies[0]);
        return replies;
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_EQ(FindServices(kType), kFound);
}

TEST_F(UnicastExchange, ABusyAgentIsAskedAgain) {
  Set("net.slp.unicastTimeouts", "60,60,5000");
  std::atomic<int> count = 0;
  SlpPeer peer(
      [&](const PeerRequest& request) {
        return ++count < 3 ? std::vector<PeerReply>{{.bytes = EncodedReplyTo(request,
                                                                             SrvRply{Error::kDaBusyNow, {}})}}
                           : Found(request);
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_EQ(peer.requests().size(), 3U);
}

TEST_F(UnicastExchange, TheAgentsErrorIsTheSearchs) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{
            {.bytes = EncodedReplyTo(request, SrvRply{Error::kScopeNotSupported, {}})}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), (SearchOutcome{SLP_SCOPE_NOT_SUPPORTED, {"-4 (null) 0", kLastServiceCall}}));
  EXPECT_EQ(FindServices(kType, "", "", 1), (SearchOutcome{SLP_SCOPE_NOT_SUPPORTED, {"-4 (null) 0"}}));
}

TEST_F(UnicastExchange, NoMatchIsNoError) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvRply{})}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), (SearchOutcome{SLP_OK, {kLastServiceCall}}));
}

TEST_F(UnicastExchange, AnOverflowedReplyIsFetchedByTcpWithTheSameRequest) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return request.transport == Transport::kStream
                   ? Found(request)
                   : std::vector<PeerReply>{Overflowed(request, {"service:printer://first"})};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
  const std::vector<PeerRequest> requests = peer.requests();
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[1].transport, Transport::kStream);
  EXPECT_EQ(requests[1].bytes, requests[0].bytes);
}

TEST_F(UnicastExchange, ALongReplyCrossesTcpInPieces) {
  std::vector<std::string> urls;
  SearchOutcome expected;
  for (int i = 0; i < 3000; ++i) {
    urls.push_back("service:printer://host-" + std::to_string(i) + ":515/queue");
    expected.calls.push_back("0 " + urls.back() + " 60");
  }
  expected.calls.push_back(kLastServiceCall);
  SlpPeer peer(
      [&](const PeerRequest& request) {
        if (request.transport != Transport::kStream) {
          return std::vector<PeerReply>{Overflowed(request)};
        }
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply(urls)),
                                       .chunk = 20000,
                                       .chunk_pause = std::chrono::milliseconds(10)}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), expected);
}

TEST_F(UnicastExchange, ARequestLongerThanTheMtuGoesByTcp) {
  SlpPeer peer(Found, AtPort());
  EXPECT_EQ(FindServices(kLongType), kFound);
  EXPECT_EQ(Transports(peer), std::vector<Transport>{Transport::kStream});
}

TEST_F(UnicastExchange, TheMtuIsTheLongestDatagram) {
  Set("net.slp.MTU", "600");
  SlpPeer peer(Found, AtPort());
  // 16 bytes of header, five lengths of two bytes, the scope DEFAULT.
  const std::string longest = "service:" + std::string(600 - 16 - 10 - 7 - 8, 'p');
  EXPECT_EQ(FindServices(longest), kFound);
  EXPECT_EQ(FindServices(longest + 'p'), kFound);
  EXPECT_EQ(Transports(peer), (std::vector{Transport::kUnicast, Transport::kStream}));
  EXPECT_EQ(peer.requests()[0].bytes.size(), 600U);
}

TEST_F(UnicastExchange, ARequestThatNoMessageHoldsIsRefused) {
  EXPECT_EQ(FindServices("service:" + std::string(70000, 'p')),
            (SearchOutcome{SLP_BUFFER_OVERFLOW, {"-18 (null) 0", kLastServiceCall}}));
}

TEST_F(UnicastExchange, WithoutTcpAnOverflowedReplyIsANetworkError) {
  PeerOptions options = AtPort();
  options.streams = false;
  SlpPeer peer([](const PeerRequest& request) { return std::vector<PeerReply>{Overflowed(request)}; },
               options);
  EXPECT_EQ(FindServices(kType), (SearchOutcome{SLP_NETWORK_ERROR, {"-23 (null) 0", kLastServiceCall}}));
}

struct BrokenStream {
  const char* name;
  std::vector<PeerReply> (*replies)(const PeerRequest&);
  SLPError result;
};

class BrokenStreams : public UnicastExchange, public testing::WithParamInterface<BrokenStream> {};

// Only the end of the time ends those that go on.
TEST_P(BrokenStreams, EndWithAnErrorInTime) {
  if (GetParam().result == SLP_NETWORK_TIMED_OUT) {
    Set("net.slp.unicastMaximumWait", "600");
  }
  SlpPeer peer(
      [](const PeerRequest& request) {
        return request.transport == Transport::kStream ? GetParam().replies(request)
                                                       : std::vector<PeerReply>{Overflowed(request)};
      },
      AtPort());
  const std::string code = std::to_string(GetParam().result);
  ExpectTakes(0, 1500, [&] {
    EXPECT_EQ(FindServices(kType),
              (SearchOutcome{GetParam().result, {code + " (null) 0", kLastServiceCall}}));
  });
}

INSTANTIATE_TEST_SUITE_P(
    UnicastExchange, BrokenStreams,
    testing::Values(
        BrokenStream{"silence", [](const PeerRequest&) { return std::vector<PeerReply>(); },
                     SLP_NETWORK_TIMED_OUT},
        BrokenStream{"closed", [](const PeerRequest&) { return std::vector<PeerReply>{{.close = true}}; },
                     SLP_NETWORK_ERROR},
        BrokenStream{"trickle",
                     [](const PeerRequest& request) {
                       return std::vector<PeerReply>{
                           {.bytes = EncodedReplyTo(request, UrlReply({kUrl + std::string(2000, 'x')})),
                            .chunk = 1,
                            .chunk_pause = std::chrono::milliseconds(10)}};
                     },
                     SLP_NETWORK_TIMED_OUT},
        BrokenStream{"cut",
                     [](const PeerRequest& request) {
                       Bytes bytes = EncodedReplyTo(request, UrlReply({kUrl}));
                       bytes.pop_back();
                       return std::vector<PeerReply>{{.bytes = bytes, .close = true}};
                     },
                     SLP_NETWORK_ERROR},
        BrokenStream{"endless",
                     [](const PeerRequest& request) {
                       Bytes bytes = EncodedReplyTo(request, UrlReply({kUrl}));
                       bytes[2] = bytes[3] = bytes[4] = 0xFF;
                       return std::vector<PeerReply>{{.bytes = bytes}};
                     },
                     SLP_NETWORK_TIMED_OUT},
        BrokenStream{"length_below_header",
                     [](const PeerRequest& request) {
                       Bytes bytes = EncodedReplyTo(request, UrlReply({kUrl}));
                       bytes[2] = bytes[3] = bytes[4] = 0;
                       return std::vector<PeerReply>{{.bytes = bytes}};
                     },
                     SLP_NETWORK_ERROR},
        BrokenStream{"only_other_messages",
                     [](const PeerRequest& request) {
                       Message other = ReplyTo(request, UrlReply({kUrl}));
                       ++other.header.xid;
                       return std::vector<PeerReply>{{.bytes = Encode(other).value(), .close = true}};
                     },
                     SLP_NETWORK_ERROR}),
    [](const testing::TestParamInfo<BrokenStream>& test) { return test.param.name; });

TEST_F(UnicastExchange, AnotherMessageOnTheStreamIsPassedOver) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        if (request.transport != Transport::kStream) {
          return std::vector<PeerReply>{Overflowed(request)};
        }
        Message other = ReplyTo(request, UrlReply({"service:printer://other"}));
        ++other.header.xid;
        return std::vector<PeerReply>{{.bytes = Encode(other).value()},
                                      {.bytes = EncodedReplyTo(request, UrlReply({kUrl}))}};
      },
      AtPort());
  EXPECT_EQ(FindServices(kType), kFound);
}

class Ipv6Exchange : public UnicastExchange {
 protected:
  void SetUp() override {
    if (!HasIpv6()) {
      GTEST_SKIP() << kNoIpv6;
    }
    Set("net.slp.useIPv6", "true");
    AskOnly("::1");
  }
  ~Ipv6Exchange() override { Set("net.slp.useIPv6", "false"); }

  PeerOptions AtIpv6() const {
    PeerOptions options = AtPort("::1");
    options.group = false;
    return options;
  }
};

TEST_F(Ipv6Exchange, AsksAnIpv6HostByDatagram) {
  const SlpPeer peer(Found, AtIpv6());
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_THAT(Transports(peer), ElementsAre(Transport::kUnicast));
}

TEST_F(Ipv6Exchange, FetchesACutReplyFromAnIpv6HostByStream) {
  const SlpPeer peer(
      [](const PeerRequest& request) {
        return request.transport == Transport::kStream ? Found(request)
                                                       : std::vector<PeerReply>{Overflowed(request)};
      },
      AtIpv6());
  EXPECT_EQ(FindServices(kType), kFound);
  EXPECT_THAT(Transports(peer), ElementsAre(Transport::kUnicast, Transport::kStream));
}

}  // namespace
}  // namespace slp::support
