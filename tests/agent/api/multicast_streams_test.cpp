// Searches that ask everyone, among them agents whose replies fit no datagram and are fetched by TCP: beside
// each other, and beside what else comes.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <atomic>
#include <memory>
#include <thread>

#include "api_fixture.h"
#include "net/listen_sockets.h"
#include "net/native_socket.h"
#include "support/prompt_result.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAreArray;
using Transport = PeerRequest::Transport;
using Replies = std::vector<PeerReply>;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

const std::string kType = "service:printer";
const std::string kUrl = "service:printer://one:515";
const SearchOutcome kFound{SLP_OK, {"0 " + kUrl + " 60", kLastServiceCall}};

Replies Silence(const PeerRequest&) {
  return {};
}

SlpPeer::Script Offering(const std::vector<std::string>& urls, milliseconds delay = {}) {
  return [=](const PeerRequest& request) {
    return Replies{{.bytes = EncodedReplyTo(request, UrlReply(urls)), .delay = delay}};
  };
}

/// What a search has reported so far, which peers may wait for. They read it on their threads.
struct Progress {
  std::vector<std::string> urls = {};    ///< of the caller's thread
  std::vector<milliseconds> takes = {};  ///< how long the caller is busy with the first ones
  std::atomic<std::size_t> reported = 0;

  static SLPBoolean SLPCALLBACK Note(SLPHandle, const char* url, unsigned short /*lifetime*/, SLPError error,
                                     void* cookie) {
    Progress& progress = *static_cast<Progress*>(cookie);
    if (error == SLP_OK) {
      progress.urls.emplace_back(url);
      const std::size_t before = progress.reported++;
      if (before < progress.takes.size()) {
        std::this_thread::sleep_for(progress.takes[before]);
      }
    }
    return SLP_TRUE;
  }
};

/// Answers when the caller has been told of so many.
SlpPeer::Script OfferingAfter(const Progress& progress, std::size_t reported,
                              const std::vector<std::string>& urls) {
  return [&progress, reported, urls](const PeerRequest& request) {
    return Replies{{.bytes = EncodedReplyTo(request, UrlReply(urls)),
                    .when = [&progress, reported] { return progress.reported >= reported; }}};
  };
}

/// A reply that has been cut behind these URLs.
Bytes CutReplyTo(const PeerRequest& request, const std::vector<std::string>& urls) {
  Message reply = ReplyTo(request, UrlReply(urls));
  reply.header.overflow = true;
  return Encode(reply).value();
}

/// An agent whose datagrams hold no more than these URLs, and are sent each time; `by_stream` says what it
/// answers by TCP.
SlpPeer::Script Cutting(const SlpPeer::Script& by_stream, const std::vector<std::string>& urls = {}) {
  return [=](const PeerRequest& request) {
    return request.transport == Transport::kStream ? by_stream(request)
                                                   : Replies{{.bytes = CutReplyTo(request, urls)}};
  };
}

std::string AddressOf(int peer) {
  return "127.0.0." + std::to_string(peer + 1);
}

std::string UrlOf(int peer) {
  return "service:printer://" + std::to_string(peer + 1);
}

class MulticastStreams : public ApiTest {
 protected:
  MulticastStreams() {
    // Many peers answer, and not only in the first round.
    Set("net.slp.multicastTimeouts", "250,250,250,250,250,250");
    Set("net.slp.multicastMaximumWait", "10000");
  }

  /// The URLs of a search, in order; peers may wait for `progress`.
  std::vector<std::string> FindWith(Progress& progress) {
    EXPECT_EQ(SLPFindSrvs(handle_, kType.c_str(), "", "", Progress::Note, &progress), SLP_OK);
    return progress.urls;
  }

  /// Cutting agents at so many addresses, each of which has one URL.
  std::vector<std::unique_ptr<SlpPeer>> CuttingPeers(
      int count, const std::function<SlpPeer::Script(int peer)>& by_stream) const {
    std::vector<std::unique_ptr<SlpPeer>> peers;
    for (int i = 0; i < count; ++i) {
      peers.push_back(std::make_unique<SlpPeer>(Cutting(by_stream(i)), AtPort(AddressOf(i))));
    }
    return peers;
  }
};

/// Those that take agents at several addresses.
class ManyMulticastStreams : public MulticastStreams {
 protected:
  void SetUp() override {
    if (kelsd::support::UnderWine()) {
      GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
    }
  }
};

TEST_F(ManyMulticastStreams, ASlowTcpAgentDoesNotHideTheOthers) {
  Set("net.slp.multicastTimeouts", "5000");
  const SlpPeer slow(Cutting(Silence), AtPort());
  const auto search = [&] {
    steady_clock::time_point reported;
    const auto on_service = [](SLPHandle, const char* /*url*/, unsigned short /*lifetime*/, SLPError error,
                               void* cookie) {
      EXPECT_EQ(error, SLP_OK);
      *static_cast<steady_clock::time_point*>(cookie) = steady_clock::now();
      return SLP_FALSE;
    };
    EXPECT_EQ(SLPFindSrvs(handle_, kType.c_str(), "", "", on_service, &reported), SLP_OK);
    return reported;
  };
  ExpectResultsWithoutDelay(UrlReply({kUrl}), AtPort("127.0.0.2"), search);
}

// Of the requests the other agent hears only the second.
TEST_F(ManyMulticastStreams, RoundsGoOnDuringAFetch) {
  Set("net.slp.unicastMaximumWait", "2000");
  const SlpPeer slow(Cutting(Silence), AtPort());
  std::atomic<int> round = 0;
  std::atomic<steady_clock::time_point> replied{};
  const SlpPeer other(
      [&](const PeerRequest& request) {
        if (++round != 2) {
          return Replies();
        }
        replied = steady_clock::now();
        return Offering({kUrl})(request);
      },
      AtPort("127.0.0.2"));
  const milliseconds limit =
      milliseconds(1500) + ExpectTakes(2000, 4000, [&] { EXPECT_EQ(FindServices(kType), kFound); });
  const std::vector<PeerRequest> requests = RequestsTo(slow, 5);
  const auto stream = std::find_if(requests.begin(), requests.end(), [](const PeerRequest& request) {
    return request.transport == Transport::kStream;
  });
  ASSERT_NE(stream, requests.end());
  EXPECT_LT(replied.load() - stream->arrival, limit);
  EXPECT_EQ(requests.size(), 5U) << "of two rounds with someone new, two without, and the fetch";
  EXPECT_LT(requests.back().arrival - stream->arrival, limit);
}

TEST_F(ManyMulticastStreams, SixteenAreFetchedSideBySideAndTheOthersInTurn) {
  constexpr int kPeers = 20;
  const auto peers =
      CuttingPeers(kPeers, [](int peer) { return Offering({UrlOf(peer)}, milliseconds(400)); });
  std::vector<std::string> expected{kLastServiceCall};
  for (int i = 0; i < kPeers; ++i) {
    expected.push_back("0 " + UrlOf(i) + " 60");
  }
  SearchOutcome outcome;
  ExpectTakes(800, 3000, [&] { outcome = FindServices(kType); });
  EXPECT_EQ(outcome.result, SLP_OK);
  EXPECT_THAT(outcome.calls, UnorderedElementsAreArray(expected));
}

TEST_F(ManyMulticastStreams, NoMoreThanSixteenAreFetchedSideBySide) {
  Set("net.slp.multicastMaximumWait", "1000");
  const int streams = WhereTheMachineGoesOn([this] {
    std::atomic<int> requests = 0;
    const auto peers = CuttingPeers(20, [&](int) {
      return [&](const PeerRequest&) {
        ++requests;
        return Replies();
      };
    });
    FindServices(kType);
    kelsd::support::WaitUntil([&] { return requests >= 16; }, std::chrono::seconds(5));
    return requests.load();
  });
  EXPECT_EQ(streams, 16);
}

TEST_F(ManyMulticastStreams, TheSilentMakeRoomAtTheirDeadline) {
  Set("net.slp.unicastMaximumWait", "600");
  const auto peers = CuttingPeers(
      18, [](int peer) { return peer < 16 ? SlpPeer::Script(Silence) : Offering({UrlOf(peer)}); });
  SearchOutcome outcome;
  ExpectTakes(0, 3000, [&] { outcome = FindServices(kType); });
  EXPECT_THAT(outcome.calls, testing::UnorderedElementsAre("0 " + UrlOf(16) + " 60", "0 " + UrlOf(17) + " 60",
                                                           kLastServiceCall));
}

TEST_F(ManyMulticastStreams, ResultsAreReportedAsTheyCome) {
  Progress progress;
  const SlpPeer last(Cutting(OfferingAfter(progress, 3, {UrlOf(3)}), {UrlOf(0)}), AtPort());
  const SlpPeer third(Cutting(OfferingAfter(progress, 2, {UrlOf(2)})), AtPort("127.0.0.2"));
  const SlpPeer second(OfferingAfter(progress, 1, {UrlOf(1)}), AtPort("127.0.0.3"));
  EXPECT_THAT(FindWith(progress), ElementsAre(UrlOf(0), UrlOf(1), UrlOf(2), UrlOf(3)));
}

// The connection of a fetch that is no longer wanted is closed when the search returns.
TEST_F(ManyMulticastStreams, WhoWantsNoMoreWaitsForNoFetch) {
  Set("net.slp.multicastTimeouts", "5000");
  PeerOptions options = AtPort();
  options.streams = false;
  const SlpPeer slow(Cutting(Silence), options);
  asio::io_context io;
  asio::ip::tcp::acceptor acceptor(io);
  ASSERT_FALSE(OpenAcceptor(acceptor, {asio::ip::make_address(options.address), port_}));
  const auto fetched = [&] {
    return WaitUntilReady(acceptor.native_handle(), AwaitedSocket::For::kReading, milliseconds(0));
  };
  const SlpPeer other(
      [&](const PeerRequest& request) {
        return Replies{{.bytes = EncodedReplyTo(request, UrlReply({kUrl})), .when = fetched}};
      },
      AtPort("127.0.0.2"));
  ExpectTakes(0, 2000, [&] {
    EXPECT_EQ(FindServices(kType, "", "", 1), (SearchOutcome{SLP_OK, {kFound.calls[0]}}));
  });
  ASSERT_TRUE(fetched());
  asio::ip::tcp::socket accepted = acceptor.accept();
  std::array<std::uint8_t, 1024> request{};
  asio::error_code error;
  accepted.non_blocking(true);
  EXPECT_GT(accepted.read_some(asio::buffer(request), error), 0U);
  EXPECT_EQ(accepted.read_some(asio::buffer(request), error), 0U);
  EXPECT_EQ(error, asio::error::eof);
}

// While the caller is busy with the URL of one agent, the fetch from the other one is under way, for longer
// than it may take.
TEST_F(ManyMulticastStreams, ACallbackThatTakesItsTimeTakesNoneFromTheFetches) {
  Set("net.slp.unicastMaximumWait", "1000");
  // After the first one both have answered, so that the fetch begins just before the second one.
  Progress progress{.takes = {milliseconds(200), milliseconds(1300)}};
  const auto peer = [](int first) {
    return Cutting(Offering({UrlOf(first), UrlOf(first + 1)}, milliseconds(100)), {UrlOf(first)});
  };
  const SlpPeer one(peer(0), AtPort());
  const SlpPeer two(peer(2), AtPort("127.0.0.2"));
  EXPECT_THAT(FindWith(progress), testing::UnorderedElementsAre(UrlOf(0), UrlOf(1), UrlOf(2), UrlOf(3)));
}

// The rounds are over after 750 ms.
TEST_F(ManyMulticastStreams, WhatComesWhileAFetchOutlastsTheRoundsCounts) {
  Progress progress;
  const SlpPeer slow(Cutting(OfferingAfter(progress, 1, {UrlOf(0)})), AtPort());
  const SlpPeer late(Offering({UrlOf(1)}, milliseconds(1100)), AtPort("127.0.0.2"));
  EXPECT_THAT(FindWith(progress), ElementsAre(UrlOf(1), UrlOf(0)));
}

// A host that answers from two ports counts as two.
TEST_F(MulticastStreams, TheFasterOfTwoFetchesIsReportedFirst) {
  Progress progress;
  std::atomic<int> streams = 0;
  const SlpPeer peer(
      [&](const PeerRequest& request) {
        if (request.transport == Transport::kStream) {
          return ++streams == 1 ? OfferingAfter(progress, 1, {UrlOf(0)})(request)
                                : Offering({UrlOf(1)})(request);
        }
        const Bytes cut = CutReplyTo(request, {});
        return Replies{{.bytes = cut}, {.bytes = cut, .from_elsewhere = true}};
      },
      AtPort());
  EXPECT_THAT(FindWith(progress), ElementsAre(UrlOf(1), UrlOf(0)));
}

TEST_F(MulticastStreams, TheMaximumWaitEndsFetches) {
  Set("net.slp.multicastTimeouts", "500");
  Set("net.slp.multicastMaximumWait", "600");
  const SlpPeer slow(Cutting(Silence, {kUrl}), AtPort());
  ExpectTakes(600, 1800, [&] { EXPECT_EQ(FindServices(kType), kFound); });
}

TEST_F(MulticastStreams, AFetchEndsAtItsDeadline) {
  Set("net.slp.unicastMaximumWait", "1300");
  const SlpPeer slow(Cutting(Silence, {kUrl}), AtPort());
  ExpectTakes(1300, 2500, [&] { EXPECT_EQ(FindServices(kType), kFound); });
}

/// More messages than are read while their agent writes the next ones. None of them answers a request: their
/// XID is 0.
Bytes ManyMessages() {
  const Bytes one = Encode(Message{Header{}, UrlReply({"service:printer://other"})}).value();
  Bytes many;
  while (many.size() < (1U << 20U)) {
    many.insert(many.end(), one.begin(), one.end());
  }
  return many;
}

// Nor does one that always has more hold up the rounds.
TEST_F(MulticastStreams, AnEndlessStreamEndsAtItsDeadlineToo) {
  Set("net.slp.unicastMaximumWait", "2000");
  const auto endlessly = [many = Replies{{.bytes = ManyMessages(), .endless = true}}](const PeerRequest&) {
    return many;
  };
  const SlpPeer endless(Cutting(endlessly, {kUrl}), AtPort());
  const milliseconds limit =
      milliseconds(1500) + ExpectTakes(2000, 5000, [&] { EXPECT_EQ(FindServices(kType), kFound); });
  const std::vector<PeerRequest> requests = RequestsTo(endless, 4);
  ASSERT_EQ(requests.size(), 4U) << "of three rounds and the fetch";
  EXPECT_LT(requests.back().arrival - requests.front().arrival, limit);
}

TEST_F(MulticastStreams, WhenRespondersNoLongerFitTheFetchStillCounts) {
  Set("net.slp.MTU", "576");
  Set("net.slp.multicastTimeouts", "500,500");
  // 16 bytes of header, five lengths, the scope DEFAULT; ten bytes are left for responders, one too few.
  const std::string type = "service:" + std::string(576 - 16 - 10 - 7 - 8 - 8, 'p');
  const SlpPeer peer(Cutting(Offering({kUrl}, milliseconds(900))), AtPort());
  EXPECT_EQ(FindServices(type), kFound);
  EXPECT_EQ(RequestsTo(peer, 2).size(), 2U);
}

struct BrokenStream {
  const char* name;
  std::function<Replies(const PeerRequest&)> replies;
};

/// The first bytes of the whole reply, after which the connection ends.
BrokenStream EndsAfter(const char* name, std::ptrdiff_t bytes) {
  return {name, [bytes](const PeerRequest& request) {
            const Bytes whole = EncodedReplyTo(request, UrlReply({"service:printer://lost", kUrl}));
            return Replies{{.bytes = Bytes(whole.begin(), whole.begin() + bytes), .close = true}};
          }};
}

Replies WithLength(const PeerRequest& request, std::uint8_t length) {
  Bytes bytes = EncodedReplyTo(request, UrlReply({"service:printer://lost"}));
  bytes[2] = bytes[3] = 0;
  bytes[4] = length;
  return {{.bytes = bytes}};
}

class BrokenMulticastStreams : public MulticastStreams, public testing::WithParamInterface<BrokenStream> {};

TEST_P(BrokenMulticastStreams, LeaveWhatTheDatagramHeld) {
  const SlpPeer peer(Cutting(GetParam().replies, {kUrl}), AtPort());
  ExpectTakes(0, 2000, [&] { EXPECT_EQ(FindServices(kType), kFound); });
}

INSTANTIATE_TEST_SUITE_P(
    MulticastStreams, BrokenMulticastStreams,
    testing::Values(
        EndsAfter("ended_at_once", 0), EndsAfter("ended_in_the_header", 7),
        EndsAfter("ended_in_the_middle", 40),
        BrokenStream{"length_0", [](const PeerRequest& request) { return WithLength(request, 0); }},
        BrokenStream{"length_11", [](const PeerRequest& request) { return WithLength(request, 11); }},
        BrokenStream{"no_message",
                     [](const PeerRequest&) { return Replies{{.bytes = Bytes(5000, 'x'), .close = true}}; }},
        BrokenStream{"error",
                     [](const PeerRequest& request) {
                       return Replies{{.bytes = EncodedReplyTo(request, SrvRply{Error::kInternalError, {}})}};
                     }},
        BrokenStream{"other_reply",
                     [](const PeerRequest& request) {
                       Message other = ReplyTo(request, UrlReply({"service:printer://other"}));
                       ++other.header.xid;
                       return Replies{{.bytes = Encode(other).value(), .close = true}};
                     }}),
    [](const testing::TestParamInfo<BrokenStream>& test) { return test.param.name; });

}  // namespace
}  // namespace slp::support
