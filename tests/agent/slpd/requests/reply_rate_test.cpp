#include "slpd/requests/reply_rate.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

namespace slp {
namespace {

TEST(ReplyRateTest, SoManyASecondThenNoneUntilTheSecondIsOver) {
  ReplyRate rate;
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(500), 2));
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(1499), 2));
  EXPECT_FALSE(rate.Take("10.0.0.7", Instant(1499), 2));
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(1500), 2));
}

// Two addresses share a place now and then, by the key that this process drew; many don't.
TEST(ReplyRateTest, EachAddressHasItsOwn) {
  constexpr int kAddresses = 100;
  ReplyRate rate;
  int taken = 0;
  for (int i = 0; i < kAddresses; ++i) {
    const std::string address = "10.0.0." + std::to_string(i);
    taken += rate.Take(address, Instant(0), 1) ? 1 : 0;
    EXPECT_FALSE(rate.Take(address, Instant(0), 1)) << address;
  }
  EXPECT_GT(taken, kAddresses / 2);
}

// An attacker could look for addresses of his own that take a host's share, if the hash were the same
// everywhere.
TEST(ReplyRateTest, AddressesWithTheSameUnkeyedHashDontShareAPlace) {
  constexpr int kAddresses = 20;
  constexpr std::size_t kPlaces = 4096;
  ReplyRate rate;
  int found = 0;
  int taken = 0;
  for (int i = 0; found < kAddresses; ++i) {
    const std::string address = "2001:db8::" + std::to_string(i);
    if (std::hash<std::string_view>{}(address) % kPlaces == 0) {
      ++found;
      taken += rate.Take(address, Instant(0), 1) ? 1 : 0;
    }
  }
  EXPECT_GT(taken, kAddresses / 2);
}

TEST(ReplyRateTest, AllForgedAddressesTogetherGetNoMoreThanThereArePlacesFor) {
  ReplyRate rate;
  int taken = 0;
  for (int i = 0; i < 100'000; ++i) {
    taken += rate.Take("address " + std::to_string(i), Instant(0), 1) ? 1 : 0;
  }
  EXPECT_GT(taken, 2048);
  EXPECT_LE(taken, 4096);
}

}  // namespace
}  // namespace slp
