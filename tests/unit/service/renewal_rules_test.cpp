#include "service/renewal_rules.h"

#include <gtest/gtest.h>

#include <vector>

namespace kelsd {
namespace {

TEST(RenewalRules, TheMarginIsThreeIntervals) {
  EXPECT_EQ(ReRegistrationMargin(1), 3);
  EXPECT_EQ(ReRegistrationMargin(2000), 6000);
  EXPECT_EQ(ReRegistrationMargin(715827882), 2147483646);
  EXPECT_EQ(ReRegistrationMargin(715827883), 2147483647);
  EXPECT_EQ(ReRegistrationMargin(2147483647), 2147483647);
}

struct Row {
  unsigned short lifetime;
  int margin_ms;
  std::int64_t oldest_kept;  ///< seconds since the last registration
};

TEST(RenewalRules, RenewsTheMarginBeforeTheEnd) {
  const std::vector<Row> rows{
      {65535, 6000, 65529},
      {30, 6000, 24},
      {7, 6000, 1},
      {6, 6000, 0},
      {1, 6000, 0},
      {30, 6999, 24},
      {30, 7000, 23},
      {60, 1999, 58},
      {60, 0, 58},
      {60, 300, 58},
      {12, 300, 10},
      {60, 2000, 58},
      {60, 2999, 58},
      {60, 3000, 57},
      {2, 3, 0},
      {3, 3, 1},
      {65535, 2147483647, 0},
      {65535, 65535000, 0},
      {65535, 65534000, 1},
  };
  constexpr std::int64_t kLast = 1000;
  constexpr std::int64_t kSlpdStart = 500;
  for (const Row& row : rows) {
    const auto due = [&](std::int64_t age) {
      return IsRenewalDue(row.lifetime, kLast, kSlpdStart, kLast + age, row.margin_ms);
    };
    EXPECT_FALSE(due(row.oldest_kept)) << row.lifetime << " " << row.margin_ms;
    EXPECT_TRUE(due(row.oldest_kept + 1)) << row.lifetime << " " << row.margin_ms;
  }
}

TEST(RenewalRules, RenewsWhatIsNotYoungerThanTheDaemon) {
  constexpr std::int64_t kLast = 1000;
  EXPECT_FALSE(IsRenewalDue(60, kLast, kLast - 1, kLast, 6000));
  EXPECT_TRUE(IsRenewalDue(60, kLast, kLast, kLast, 6000));
  EXPECT_TRUE(IsRenewalDue(60, kLast, kLast + 1, kLast + 1, 6000));
}

TEST(RenewalRules, RenewsAfterTheClockWasSetBack) {
  constexpr std::int64_t kLast = 1000;
  constexpr std::int64_t kSlpdStart = 500;
  EXPECT_FALSE(IsRenewalDue(60, kLast, kSlpdStart, kLast, 6000));
  EXPECT_TRUE(IsRenewalDue(60, kLast, kSlpdStart, kLast - 1, 6000));
  EXPECT_TRUE(IsRenewalDue(60, kLast, kSlpdStart, kSlpdStart - 1, 6000));
}

}  // namespace
}  // namespace kelsd
