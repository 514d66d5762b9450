// Searches of many agents that answer at once, late, or mixed: all of them count, each once, and each as soon
// as it is there.
#include <gmock/gmock.h>

#include <array>
#include <memory>
#include <random>

#include "api_fixture.h"
#include "properties/catalogue.h"
#include "support/latch.h"
#include "support/under_wine/under_wine.h"

namespace slp::support {
namespace {

using testing::UnorderedElementsAreArray;

constexpr int kPeers = 10;

/// The longest that an agent may wait before it answers.
constexpr int kLongestDelay = 500;

std::string AddressOf(int peer) {
  return "127.0.0." + std::to_string(peer + 1);
}

std::string UrlOf(int peer) {
  return "service:late://" + std::to_string(peer + 1);
}

bool NamesAsResponder(const PeerRequest& request, const std::string& address) {
  return ("," + PreviousResponders(request) + ",").find("," + address + ",") != std::string::npos;
}

class LateReplies : public ApiTest {
 protected:
  LateReplies() {
    WithDefault("net.slp.multicastTimeouts");
    WithDefault("net.slp.multicastMaximumWait");
  }

  void SetUp() override {
    if (kelsd::support::UnderWine()) {
      GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
    }
  }

  static void WithDefault(const char* key) { Set(key, std::string(FindProperty(key)->default_value)); }

  /// Agents that answer each request which does not name them, each with a delay of its own.
  std::vector<std::unique_ptr<SlpPeer>> Peers(const std::array<int, kPeers>& delays) const {
    std::vector<std::unique_ptr<SlpPeer>> peers;
    for (int i = 0; i < kPeers; ++i) {
      const std::chrono::milliseconds delay(delays[static_cast<std::size_t>(i)]);
      peers.push_back(std::make_unique<SlpPeer>(
          [i, delay](const PeerRequest& request) {
            return NamesAsResponder(request, AddressOf(i))
                       ? std::vector<PeerReply>()
                       : std::vector<PeerReply>{
                             {.bytes = EncodedReplyTo(request, UrlReply({UrlOf(i)})), .delay = delay}};
          },
          AtPort(AddressOf(i))));
    }
    return peers;
  }

  void ExpectEachOnce(const std::array<int, kPeers>& delays) {
    const std::vector<std::unique_ptr<SlpPeer>> peers = Peers(delays);
    std::vector<std::string> expected;
    for (int i = 0; i < kPeers; ++i) {
      expected.push_back("0 " + UrlOf(i) + " 60");
    }
    expected.push_back(kLastServiceCall);
    const SearchOutcome outcome = FindServices("service:late");
    EXPECT_EQ(outcome.result, SLP_OK);
    EXPECT_THAT(outcome.calls, UnorderedElementsAreArray(expected));
    EXPECT_EQ(outcome.calls.back(), kLastServiceCall);
  }
};

class RandomDelays : public LateReplies, public testing::WithParamInterface<unsigned> {};

TEST_P(RandomDelays, AllCountOnce) {
  std::mt19937 random(GetParam());
  std::array<int, kPeers> delays{};
  for (int& delay : delays) {
    delay = static_cast<int>(random() % (kLongestDelay + 1));
  }
  // At least one at once, and one as late as may be.
  delays[random() % (kPeers / 2)] = 0;
  delays[kPeers / 2 + random() % (kPeers / 2)] = kLongestDelay;
  ExpectEachOnce(delays);
}

INSTANTIATE_TEST_SUITE_P(LateReplies, RandomDelays, testing::Values(1U, 2U, 3U));

TEST_F(LateReplies, AllAtOnceAndAllAsLateAsMayBe) {
  ExpectEachOnce({});
  std::array<int, kPeers> delays{};
  delays.fill(kLongestDelay);
  ExpectEachOnce(delays);
}

// What answers the first request counts in the round of the second one.
TEST_F(LateReplies, RoundsShorterThanTheDelayDoNotLoseThem) {
  Set("net.slp.multicastTimeouts", "400,400,400,400");
  std::array<int, kPeers> delays{};
  delays.fill(kLongestDelay);
  delays[0] = 0;
  ExpectEachOnce(delays);
}

// The second agent answers only when the first one's service has reached the caller, and all within one
// round.
TEST_F(LateReplies, EachIsReportedAsItComes) {
  struct Reported {
    kelsd::support::Latch first{1};
    std::vector<std::string> urls = {};
  } reported;
  Set("net.slp.multicastTimeouts", "5000");
  Set("net.slp.multicastMaximumWait", "5000");
  SlpPeer first(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({UrlOf(0)}))}};
      },
      AtPort(AddressOf(0)));
  SlpPeer second(
      [&](const PeerRequest& request) {
        reported.first.Wait();
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, UrlReply({UrlOf(1)}))}};
      },
      AtPort(AddressOf(1)));
  const auto collect = [](SLPHandle, const char* url, unsigned short, SLPError error, void* cookie) {
    auto& into = *static_cast<Reported*>(cookie);
    into.urls.emplace_back(error == SLP_OK ? url : "last call");
    into.first.CountDown();
    // Both are there: the rest of the round would bring nothing.
    return into.urls.size() == 2 ? SLP_FALSE : SLP_TRUE;
  };
  EXPECT_EQ(SLPFindSrvs(handle_, "service:late", "", "", collect, &reported), SLP_OK);
  EXPECT_EQ(reported.urls, (std::vector<std::string>{UrlOf(0), UrlOf(1)}));
}

}  // namespace
}  // namespace slp::support
