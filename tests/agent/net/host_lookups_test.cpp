#include "net/host_lookups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "support/latch.h"

namespace slp {
namespace {

using kelsd::support::Latch;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const asio::ip::address kLocalhost = asio::ip::make_address("127.0.0.1");

// What one name stands for, by the system or by what stands in for it.
HostAnswer AnswerFor(const HostQuery& query, HostLookups::Resolve resolve = HostLookups::AskSystem) {
  Latch done(1);
  HostAnswer result;
  HostLookups lookups(
      [&](const HostQuery&, const HostAnswer& answer) {
        result = answer;
        done.CountDown();
      },
      std::move(resolve));
  lookups.Begin(query);
  done.Wait();
  return result;
}

TEST(HostLookups, AddressesOfTheVersionsThatAreAskedFor) {
  const HostAnswer answer = AnswerFor({"localhost", false});
  EXPECT_FALSE(answer.error) << answer.error.message();
  EXPECT_THAT(answer.addresses, ElementsAre(kLocalhost));
  // Which names a host gives its IPv6 loopback address is its own affair; a literal always is one.
  EXPECT_THAT(AnswerFor({"::1", true}).addresses, ElementsAre(asio::ip::make_address("::1")));
  EXPECT_THAT(AnswerFor({"::1", false}).addresses, IsEmpty());
  EXPECT_THAT(AnswerFor({"localhost", true}).addresses, Contains(kLocalhost));
}

TEST(HostLookups, WhatIsNotFoundIsAnError) {
  const HostAnswer answer = AnswerFor({"no-such-host.invalid", true});
  EXPECT_TRUE(answer.error);
  EXPECT_THAT(answer.addresses, IsEmpty());
}

// What a name stands for when the system answers with these addresses.
HostAnswer AnswerOf(const std::vector<std::string>& texts) {
  return AnswerFor({"agent.example", true}, [&texts](const HostQuery&) {
    HostAnswer answer;
    for (const std::string& text : texts) {
      answer.addresses.push_back(asio::ip::make_address(text));
    }
    return answer;
  });
}

TEST(HostLookups, TellASingleHostsAddressesOnce) {
  EXPECT_THAT(AnswerOf({"0.0.0.0", "10.0.0.1", "::", "239.255.255.253", "10.0.0.2", "ff02::116",
                        "2001:db8::1", "::ffff:224.0.0.1", "::ffff:10.0.0.1", "10.0.0.2"})
                  .addresses,
              ElementsAre(asio::ip::make_address("10.0.0.1"), asio::ip::make_address("10.0.0.2"),
                          asio::ip::make_address("2001:db8::1")));
}

TEST(HostLookups, TellAFewAddressesOfAnAnswerHoweverLong) {
  std::vector<std::string> texts{"10.0.1.1"};
  for (int number = 1; number < 200; ++number) {
    texts.push_back("10.0.1." + std::to_string(number));
  }
  const HostAnswer answer = AnswerOf(texts);
  EXPECT_FALSE(answer.error);
  ASSERT_EQ(answer.addresses.size(), HostLookups::kMostAddresses);
  EXPECT_EQ(answer.addresses.front(), asio::ip::make_address("10.0.1.1"));
  EXPECT_EQ(answer.addresses.back(), asio::ip::make_address("10.0.1.8"));
}

TEST(HostLookups, AnAnswerWithoutASingleHostIsNone) {
  EXPECT_EQ(AnswerOf({}).error, asio::error::host_not_found);
  EXPECT_EQ(AnswerOf({"0.0.0.0", "ff02::116"}).error, asio::error::host_not_found);
}

TEST(HostLookups, AFewSideBySideAndTheOthersInTheirTurn) {
  constexpr int kNames = 20;
  std::mutex mutex;
  std::size_t now = 0;
  std::size_t most = 0;
  Latch some(HostLookups::kSideBySide);
  Latch done(kNames);
  HostLookups lookups([&](const HostQuery&, const HostAnswer&) { done.CountDown(); },
                      [&](const HostQuery&) {
                        {
                          const std::lock_guard lock(mutex);
                          most = std::max(most, ++now);
                        }
                        some.ArriveAndWait();
                        const std::lock_guard lock(mutex);
                        --now;
                        return HostAnswer{};
                      });
  for (int name = 0; name < kNames; ++name) {
    lookups.Begin({std::to_string(name), false});
  }
  done.Wait();
  EXPECT_EQ(most, HostLookups::kSideBySide);
}

// What a name stands for when the system's way to look it up throws.
template <typename Thrown>
asio::error_code ErrorWhenThrown(const Thrown& thrown) {
  Latch done(1);
  asio::error_code error;
  HostLookups lookups(
      [&](const HostQuery&, const HostAnswer& answer) {
        error = answer.error;
        done.CountDown();
      },
      [&](const HostQuery&) -> HostAnswer { throw thrown; });
  lookups.Begin({"agent.example", false});
  done.Wait();
  return error;
}

TEST(HostLookups, WhatIsThrownIsAnError) {
  EXPECT_EQ(ErrorWhenThrown(std::system_error(asio::error::access_denied)), asio::error::access_denied);
  EXPECT_EQ(ErrorWhenThrown(std::system_error(asio::error_code())), asio::error::no_recovery);
  EXPECT_EQ(ErrorWhenThrown(std::bad_alloc()), asio::error::no_memory);
  EXPECT_EQ(ErrorWhenThrown(0), asio::error::no_recovery);
}

TEST(HostLookups, WhoCannotTakeAnAnswerIsToldOfThatOnce) {
  Latch twice(2);
  Latch last(1);
  std::vector<asio::error_code> told;
  HostLookups lookups(
      [&](const HostQuery& query, const HostAnswer& answer) {
        if (query.name == "last") {
          last.CountDown();
          return;
        }
        told.push_back(answer.error);
        twice.CountDown();
        throw std::bad_alloc();
      },
      [](const HostQuery&) {
        return HostAnswer{{}, {kLocalhost}};
      });
  lookups.Begin({"first", false});
  twice.Wait();
  lookups.Begin({"last", false});
  last.Wait();
  EXPECT_THAT(told, ElementsAre(asio::error_code(), asio::error::no_memory));
}

// What a lookup that takes longer than its owner lives still uses.
struct Outlived {
  Latch begun{1};
  Latch release{1};
  Latch ended{1};
};

TEST(HostLookups, NobodyWaitsForThem) {
  const auto shared = std::make_shared<Outlived>();
  bool told = false;
  {
    HostLookups lookups([&](const HostQuery&, const HostAnswer&) { told = true; },
                        [shared](const HostQuery& query) {
                          shared->begun.CountDown();
                          shared->release.Wait();
                          if (query.name == "slow") {
                            shared->ended.CountDown();
                          }
                          return HostAnswer{};
                        });
    lookups.Begin({"slow", false});
    shared->begun.Wait();
  }
  shared->release.CountDown();
  shared->ended.Wait();
  EXPECT_FALSE(told);
}

}  // namespace
}  // namespace slp
