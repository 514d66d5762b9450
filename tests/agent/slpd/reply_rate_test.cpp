#include "slpd/reply_rate.h"

#include <gtest/gtest.h>

#include <string>

namespace slp {
namespace {

TEST(ReplyRateTest, SoManyASecondThenNoneUntilTheSecondIsOver) {
  ReplyRate rate;
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(500), 2));
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(1499), 2));
  EXPECT_FALSE(rate.Take("10.0.0.7", Instant(1499), 2));
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(1500), 2));
}

TEST(ReplyRateTest, EachAddressHasItsOwn) {
  ReplyRate rate;
  EXPECT_TRUE(rate.Take("10.0.0.7", Instant(0), 1));
  EXPECT_FALSE(rate.Take("10.0.0.7", Instant(0), 1));
  EXPECT_TRUE(rate.Take("10.0.0.8", Instant(0), 1));
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
