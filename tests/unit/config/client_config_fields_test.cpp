#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "support/same_result.h"
#include "unit/config/client_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;

constexpr int kLargest = std::numeric_limits<int>::max();

const std::string kClass = "kelsd::CKelSLPClientConfig::";

TEST(ClientConfigFields, MaximumResultsAreAtLeastMinusOne) {
  for (const int value : {-2, -100}) {
    CKelSLPClientConfig config;
    ASSERT_THAT(config.SetMaxResults(5), SameResult(kSuccess));
    const std::string detail =
        "Maximum number of results is too small (must be at least -1): " + std::to_string(value) + ".";
    EXPECT_THAT(CKelSLPClientConfig::ValidateMaxResults(value),
                SameResult(Refusal(detail, "kelsd::CKelSLPClientConfig::ValidateMaxResults")));
    EXPECT_THAT(config.SetMaxResults(value),
                SameResult(Refusal(detail,
                                   "kelsd::CKelSLPClientConfig::SetMaxResults "
                                   "kelsd::CKelSLPClientConfig::ValidateMaxResults")));
    EXPECT_EQ(config.GetMaxResults(), 5);
  }
  for (const int value : {-1, 0, 1, kLargest}) {
    CKelSLPClientConfig config;
    EXPECT_THAT(CKelSLPClientConfig::ValidateMaxResults(value), SameResult(kSuccess));
    EXPECT_THAT(config.SetMaxResults(value), SameResult(kSuccess));
    EXPECT_EQ(config.GetMaxResults(), value);
    EXPECT_EQ(config.GetTimeout(), 10000);
  }
}

/// One of the two kinds of request that a client's record adds, with what belongs to it.
struct Kind {
  std::string name;
  std::string words;
  int default_wait;
  std::vector<int> default_timeouts;
  SResult (*validate_wait)(const int&, const std::vector<int>&);
  SResult (*validate_timeouts)(const std::vector<int>&, const int&);
  SResult (*set_wait)(CKelSLPClientConfig&, int);
  SResult (*set_timeouts)(CKelSLPClientConfig&, const std::vector<int>&);
  SResult (*set_both)(CKelSLPClientConfig&, int, const std::vector<int>&);
  int (*wait)(const CKelSLPClientConfig&);
  std::vector<int> (*timeouts)(const CKelSLPClientConfig&);
  int wait_of_the_other;
};

class ClientConfigTiming : public ::testing::TestWithParam<Kind> {
 protected:
  const Kind& kind_ = GetParam();
  const std::string wait_trail_ =
      kClass + "Validate" + kind_.name + "MaximumWait kelsd::CKelSLPConfig::ValidateMaximumWait";
  const std::string timeouts_trail_ =
      kClass + "Validate" + kind_.name + "Timeouts kelsd::CKelSLPConfig::ValidateTimeouts";

  static std::tuple<int, std::vector<int>, int> State(const Kind& kind, CKelSLPClientConfig& config) {
    return {kind.wait(config), kind.timeouts(config), config.GetTimeout()};
  }
  std::tuple<int, std::vector<int>, int> Unchanged() const {
    return {kind_.default_wait, kind_.default_timeouts, 10000};
  }
};

struct WaitRow {
  int wait;
  std::vector<int> timeouts;
  std::string detail;
};

std::vector<WaitRow> RefusedWaits(const std::string& kind) {
  return {
      {500, {100}, "The " + kind + " maximum wait is too small (must be at least 501): 500."},
      {400, {}, "The " + kind + " maximum wait is too small (must be at least 501): 400."},
      {501,
       {},
       "The " + kind + " maximum wait cannot be validated because no " + kind +
           " timeouts were provided (must be greater than first " + kind + " timeout)."},
      {600,
       {600},
       "The " + kind + " maximum wait is too small (must be greater than first " + kind +
           " timeout 600):600."},
      {501,
       {600, 100},
       "The " + kind + " maximum wait is too small (must be greater than first " + kind +
           " timeout 600):501."},
  };
}

TEST_P(ClientConfigTiming, RefusesWaits) {
  for (const WaitRow& row : RefusedWaits(kind_.words)) {
    EXPECT_THAT(kind_.validate_wait(row.wait, row.timeouts), SameResult(Refusal(row.detail, wait_trail_)));
    CKelSLPClientConfig config;
    EXPECT_THAT(kind_.set_both(config, row.wait, row.timeouts),
                SameResult(Refusal(row.detail,
                                   kClass + "Set" + kind_.name + "MaximumWaitAndTimeouts " + wait_trail_)));
    EXPECT_EQ(State(kind_, config), Unchanged());
  }
}

TEST_P(ClientConfigTiming, AcceptsWaits) {
  const WaitRow rows[] = {{501, {500}, ""}, {601, {600}, ""}, {4000, {500, 50}, ""}, {501, {100, 9000}, ""}};
  for (const WaitRow& row : rows) {
    EXPECT_THAT(kind_.validate_wait(row.wait, row.timeouts), SameResult(kSuccess));
    CKelSLPClientConfig config;
    EXPECT_THAT(kind_.set_both(config, row.wait, row.timeouts), SameResult(kSuccess));
    EXPECT_EQ(State(kind_, config),
              std::make_tuple(row.wait, row.timeouts, row.wait + kind_.wait_of_the_other));
  }
}

TEST_P(ClientConfigTiming, SetsTheWaitByItself) {
  CKelSLPClientConfig config;
  EXPECT_THAT(
      kind_.set_wait(config, 500),
      SameResult(Refusal("The " + kind_.words + " maximum wait is too small (must be at least 501): 500.",
                         kClass + "Set" + kind_.name + "MaximumWait " + wait_trail_)));
  EXPECT_EQ(State(kind_, config), Unchanged());
  EXPECT_THAT(kind_.set_wait(config, 501), SameResult(kSuccess));
  EXPECT_EQ(State(kind_, config),
            std::make_tuple(501, kind_.default_timeouts, 501 + kind_.wait_of_the_other));
}

TEST_P(ClientConfigTiming, ChecksTheWaitAgainstTheTimeoutsHeld) {
  CKelSLPClientConfig config;
  ASSERT_THAT(kind_.set_timeouts(config, {600}), SameResult(kSuccess));
  EXPECT_THAT(
      kind_.set_wait(config, 600),
      SameResult(Refusal("The " + kind_.words + " maximum wait is too small (must be greater than first " +
                             kind_.words + " timeout 600):600.",
                         kClass + "Set" + kind_.name + "MaximumWait " + wait_trail_)));
  EXPECT_EQ(State(kind_, config), std::make_tuple(kind_.default_wait, std::vector<int>{600}, 10000));
  EXPECT_THAT(kind_.set_wait(config, 601), SameResult(kSuccess));
}

TEST_P(ClientConfigTiming, RefusesTimeouts) {
  const std::string wait = std::to_string(kind_.default_wait);
  const struct {
    std::vector<int> timeouts;
    std::string detail;
  } rows[] = {
      {{}, "No " + kind_.words + " timeout provided (provide at least one value)."},
      {{500, 99},
       "The " + kind_.words + " timeout value is too small (must be at least 100):99 at position 2."},
      {{100, 100, 100, 100, 100, 0, 0},
       "The " + kind_.words + " timeout value is too small (must be at least 100):0 at position 6."},
      {{kind_.default_wait},
       "First " + kind_.words + " timeout is too big (must be smaller than first " + kind_.words +
           " maximum wait " + wait + "):" + wait + "."},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(kind_.validate_timeouts(row.timeouts, kind_.default_wait),
                SameResult(Refusal(row.detail, timeouts_trail_)));
    CKelSLPClientConfig config;
    EXPECT_THAT(kind_.set_timeouts(config, row.timeouts),
                SameResult(Refusal(row.detail, kClass + "Set" + kind_.name + "Timeouts " + timeouts_trail_)));
    EXPECT_EQ(State(kind_, config), Unchanged());
  }
}

TEST_P(ClientConfigTiming, KeepsTheFirstSixTimeouts) {
  const std::vector<int> given = {100, 200, 300, 400, 500, 600, 7, 800};
  const std::vector<int> kept = {100, 200, 300, 400, 500, 600};
  EXPECT_THAT(kind_.validate_timeouts(given, kind_.default_wait), SameResult(kSuccess));
  CKelSLPClientConfig config;
  EXPECT_THAT(kind_.set_timeouts(config, given), SameResult(kSuccess));
  EXPECT_EQ(State(kind_, config), std::make_tuple(kind_.default_wait, kept, 10000));
  EXPECT_THAT(kind_.set_both(config, 700, given), SameResult(kSuccess));
  EXPECT_EQ(State(kind_, config), std::make_tuple(700, kept, 700 + kind_.wait_of_the_other));
}

TEST_P(ClientConfigTiming, SetTimeoutsLeavesATimeoutThatWasGiven) {
  CKelSLPClientConfig config;
  ASSERT_THAT(config.SetTimeout(12001), SameResult(kSuccess));
  ASSERT_THAT(kind_.set_timeouts(config, {150}), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), 12001);
}

TEST_P(ClientConfigTiming, HoldsTheTimeoutAtTheLargestInteger) {
  CKelSLPClientConfig config;
  EXPECT_THAT(kind_.set_wait(config, kLargest - kind_.wait_of_the_other), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), kLargest);
  EXPECT_THAT(kind_.set_wait(config, kLargest - kind_.wait_of_the_other - 1), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), kLargest - 1);
  EXPECT_THAT(kind_.set_wait(config, kLargest), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), kLargest);
  const std::vector<int> timeouts = {500};
  EXPECT_THAT(kind_.set_both(config, kLargest, timeouts), SameResult(kSuccess));
  EXPECT_EQ(State(kind_, config), std::make_tuple(kLargest, timeouts, kLargest));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ClientConfigTiming,
    ::testing::Values(Kind{"DADiscovery",
                           "directory agent discovery",
                           4000,
                           {500, 750, 1100, 1600},
                           &CKelSLPClientConfig::ValidateDADiscoveryMaximumWait,
                           &CKelSLPClientConfig::ValidateDADiscoveryTimeouts,
                           [](CKelSLPClientConfig& c, int wait) { return c.SetDADiscoveryMaximumWait(wait); },
                           [](CKelSLPClientConfig& c, const std::vector<int>& timeouts) {
                             return c.SetDADiscoveryTimeouts(timeouts);
                           },
                           [](CKelSLPClientConfig& c, int wait, const std::vector<int>& timeouts) {
                             return c.SetDADiscoveryMaximumWaitAndTimeouts(wait, timeouts);
                           },
                           [](const CKelSLPClientConfig& c) { return c.GetDADiscoveryMaximumWait(); },
                           [](const CKelSLPClientConfig& c) { return c.GetDADiscoveryTimeouts(); },
                           6000},
                      Kind{"Multicast",
                           "multicast",
                           6000,
                           {500, 750, 1100, 1600, 2000},
                           &CKelSLPClientConfig::ValidateMulticastMaximumWait,
                           &CKelSLPClientConfig::ValidateMulticastTimeouts,
                           [](CKelSLPClientConfig& c, int wait) { return c.SetMulticastMaximumWait(wait); },
                           [](CKelSLPClientConfig& c, const std::vector<int>& timeouts) {
                             return c.SetMulticastTimeouts(timeouts);
                           },
                           [](CKelSLPClientConfig& c, int wait, const std::vector<int>& timeouts) {
                             return c.SetMulticastMaximumWaitAndTimeouts(wait, timeouts);
                           },
                           [](const CKelSLPClientConfig& c) { return c.GetMulticastMaximumWait(); },
                           [](const CKelSLPClientConfig& c) { return c.GetMulticastTimeouts(); },
                           4000}),
    [](const ::testing::TestParamInfo<Kind>& kind) { return kind.param.name; });

TEST(ClientConfigFields, TheTimeoutFollowsTheWaits) {
  CKelSLPClientConfig config;
  ASSERT_THAT(config.SetDADiscoveryMaximumWait(5000), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), 11000);
  ASSERT_THAT(config.SetMulticastMaximumWait(1000), SameResult(kSuccess));
  EXPECT_EQ(config.GetTimeout(), 6000);
}

TEST(ClientConfigFields, GettersReturnCopies) {
  CKelSLPClientConfig config;
  config.GetDADiscoveryTimeouts().clear();
  config.GetMulticastTimeouts().clear();
  EXPECT_THAT(config.GetDADiscoveryTimeouts(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_THAT(config.GetMulticastTimeouts(), ElementsAre(500, 750, 1100, 1600, 2000));
}

}  // namespace
}  // namespace kelsd
