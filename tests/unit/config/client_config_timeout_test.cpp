#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "support/same_result.h"
#include "unit/config/client_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;

const std::vector<int> kFour = {500, 750, 1100, 1600};
const std::vector<int> kFive = {500, 750, 1100, 1600, 2000};
const std::vector<int> kSix = {500, 750, 1100, 1600, 2000, 3000};

using Timing = decltype(ReadTiming(std::declval<CKelSLPClientConfig&>()));

/// A record whose timing differs from the defaults and whose timeout is none that the tests set.
CKelSLPClientConfig OtherRecord() {
  CKelSLPClientConfig config;
  EXPECT_THAT(config.SetDADiscoveryMaximumWaitAndTimeouts(777, {111}), SameResult(kSuccess));
  EXPECT_THAT(config.SetMulticastMaximumWaitAndTimeouts(888, {112}), SameResult(kSuccess));
  EXPECT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(999, {113}), SameResult(kSuccess));
  return config;
}

TEST(ClientConfigTimeout, IsDividedInTheProportionsOfTheDefaults) {
  // Waits and timeouts of directory agent discovery, multicast and unicast, then the timeout given.
  const Timing rows[] = {
      {4000, kFour, 6000, kFive, 4000, kFour, 10000},
      {6000, kFive, 9000, kSix, 6000, kFive, 15000},
      {12000, kSix, 18000, kSix, 12000, kSix, 30000},
      {501, kFour, 751, kFive, 501, kFour, 1252},
      {4800, kFour, 7201, kFive, 4801, kFour, 12001},
      // A fifth timeout fits into a wait of 5951, a sixth into one of 8951.
      {5950, kFour, 8925, kFive, 5950, kFour, 14875},
      {5951, kFive, 8926, kFive, 5951, kFive, 14877},
      {5967, kFive, 8950, kFive, 5967, kFive, 14917},
      {5967, kFive, 8951, kSix, 5967, kFive, 14918},
      {8951, kSix, 13426, kSix, 8951, kSix, 22377},
      {858993459, kSix, 1288490188, kSix, 858993459, kSix, std::numeric_limits<int>::max()},
  };
  for (const auto& row : rows) {
    const int timeout = std::get<6>(row);
    SCOPED_TRACE(timeout);
    CKelSLPClientConfig config = OtherRecord();
    EXPECT_THAT(config.SetTimeout(timeout), SameResult(kSuccess));
    EXPECT_EQ(ReadTiming(config), row);
  }
}

TEST(ClientConfigTimeout, IsRefusedWhenAWaitGetsTooSmall) {
  const std::string too_small = "The unicast maximum wait is too small (must be at least 501): ";
  const struct {
    int timeout;
    std::vector<int> refused_waits;
  } rows[] = {
      {1251, {500}},
      {1250, {500, 500}},
      {1000, {400, 400}},
      {834, {334, 500, 333}},
      {0, {0, 0, 0}},
      {-5, {-2, -3, -2}},
      {std::numeric_limits<int>::min(), {-858993459, -1288490189, -858993459}},
  };
  for (const auto& row : rows) {
    std::string detail =
        "Invalid timeout value of " + std::to_string(row.timeout) + " provided (too small). ";
    for (const int wait : row.refused_waits) {
      detail += too_small + std::to_string(wait) + ". ";
    }
    CKelSLPClientConfig config = OtherRecord();
    const auto before = ReadTiming(config);
    EXPECT_THAT(config.SetTimeout(row.timeout),
                SameResult(SResult(SResult::ERR_INVALID_PARAMETER, detail,
                                   "kelsd::CKelSLPClientConfig::SetTimeout")));
    EXPECT_EQ(ReadTiming(config), before);
  }
}

TEST(ClientConfigTimeout, TellsTheRefusalWordForWord) {
  CKelSLPClientConfig config;
  EXPECT_THAT(
      config.SetTimeout(1000),
      SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                         "Invalid timeout value of 1000 provided (too small). The unicast maximum wait "
                         "is too small (must be at least 501): 400. The unicast maximum wait is too "
                         "small (must be at least 501): 400. ",
                         "kelsd::CKelSLPClientConfig::SetTimeout")));
  EXPECT_EQ(ReadTiming(config), std::make_tuple(4000, kFour, 6000, kFive, 4000, kFour, 10000));
}

TEST(ClientConfigTimeout, ThatTheRecordHasAlreadyChangesNothing) {
  CKelSLPClientConfig config;
  ASSERT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(999, {113}), SameResult(kSuccess));
  EXPECT_THAT(config.SetTimeout(10000), SameResult(kSuccess));
  EXPECT_EQ(ReadTiming(config), std::make_tuple(4000, kFour, 6000, kFive, 999, std::vector<int>{113}, 10000));

  // Also one that would be refused otherwise.
  ASSERT_THAT(config.SetDADiscoveryMaximumWaitAndTimeouts(501, {111}), SameResult(kSuccess));
  ASSERT_THAT(config.SetMulticastMaximumWaitAndTimeouts(501, {112}), SameResult(kSuccess));
  ASSERT_EQ(config.GetTimeout(), 1002);
  EXPECT_THAT(config.SetTimeout(1002), SameResult(kSuccess));
  EXPECT_THAT(config.GetDADiscoveryTimeouts(), ElementsAre(111));
}

}  // namespace
}  // namespace kelsd
