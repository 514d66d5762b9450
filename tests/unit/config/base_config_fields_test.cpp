#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "support/same_result.h"
#include "unit/config/base_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kSmallest = std::numeric_limits<int>::min();

struct NumberRow {
  int value;
  std::string detail;
};

TEST(BaseConfigFields, MulticastTTLIsFrom1To255) {
  const NumberRow rows[] = {
      {0, "Multicast TTL is out of range [1, 255]: 0."},
      {256, "Multicast TTL is out of range [1, 255]: 256."},
      {-1, "Multicast TTL is out of range [1, 255]: -1."},
      {kLargest, "Multicast TTL is out of range [1, 255]: 2147483647."},
  };
  for (const NumberRow& row : rows) {
    CKelSLPConfig config;
    ASSERT_THAT(config.SetMulticastTTL(77), SameResult(kSuccess));
    EXPECT_THAT(CKelSLPConfig::ValidateMulticastTTL(row.value),
                SameResult(Refusal(row.detail, "kelsd::CKelSLPConfig::ValidateMulticastTTL")));
    EXPECT_THAT(config.SetMulticastTTL(row.value),
                SameResult(Refusal(row.detail,
                                   "kelsd::CKelSLPConfig::SetMulticastTTL "
                                   "kelsd::CKelSLPConfig::ValidateMulticastTTL")));
    EXPECT_EQ(config.GetMulticastTTL(), 77);
  }
  for (const int value : {1, 2, 254, 255}) {
    CKelSLPConfig config;
    EXPECT_THAT(CKelSLPConfig::ValidateMulticastTTL(value), SameResult(kSuccess));
    EXPECT_THAT(config.SetMulticastTTL(value), SameResult(kSuccess));
    EXPECT_EQ(config.GetMulticastTTL(), value);
  }
}

TEST(BaseConfigFields, MTUIsAtLeast576) {
  const NumberRow rows[] = {
      {575, "MTU is too small (must be at least 576): 575."},
      {0, "MTU is too small (must be at least 576): 0."},
      {kSmallest, "MTU is too small (must be at least 576): -2147483648."},
  };
  for (const NumberRow& row : rows) {
    CKelSLPConfig config;
    EXPECT_THAT(CKelSLPConfig::ValidateMTU(row.value),
                SameResult(Refusal(row.detail, "kelsd::CKelSLPConfig::ValidateMTU")));
    EXPECT_THAT(
        config.SetMTU(row.value),
        SameResult(Refusal(row.detail, "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU")));
    EXPECT_EQ(config.GetMTU(), 1400);
  }
  for (const int value : {576, 577, kLargest}) {
    CKelSLPConfig config;
    EXPECT_THAT(CKelSLPConfig::ValidateMTU(value), SameResult(kSuccess));
    EXPECT_THAT(config.SetMTU(value), SameResult(kSuccess));
    EXPECT_EQ(config.GetMTU(), value);
  }
}

struct WaitRow {
  int wait;
  std::vector<int> timeouts;
  std::string detail;
};

const WaitRow kRefusedWaits[] = {
    {500, {500, 750, 1100, 1600}, "The unicast maximum wait is too small (must be at least 501): 500."},
    {300, {100}, "The unicast maximum wait is too small (must be at least 501): 300."},
    {300, {}, "The unicast maximum wait is too small (must be at least 501): 300."},
    {-1, {100}, "The unicast maximum wait is too small (must be at least 501): -1."},
    {501,
     {},
     "The unicast maximum wait cannot be validated because no unicast timeouts were provided (must be "
     "greater than first unicast timeout)."},
    {501,
     {600},
     "The unicast maximum wait is too small (must be greater than first unicast timeout 600):501."},
    {600,
     {600},
     "The unicast maximum wait is too small (must be greater than first unicast timeout 600):600."},
    {4000,
     {5000},
     "The unicast maximum wait is too small (must be greater than first unicast timeout 5000):4000."},
};

const WaitRow kAcceptedWaits[] = {
    {501, {500, 750, 1100, 1600}, ""}, {601, {600}, ""}, {600, {100, 9000}, ""}, {4000, {500, 50}, ""},
    {kLargest, {kLargest - 1}, ""},    {501, {-5}, ""},
};

TEST(BaseConfigFields, UnicastMaximumWaitIsCheckedAgainstMinimumAndFirstTimeout) {
  for (const WaitRow& row : kRefusedWaits) {
    EXPECT_THAT(CKelSLPConfig::ValidateUnicastMaximumWait(row.wait, row.timeouts),
                SameResult(Refusal(row.detail,
                                   "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait "
                                   "kelsd::CKelSLPConfig::ValidateMaximumWait")));
  }
  for (const WaitRow& row : kAcceptedWaits) {
    EXPECT_THAT(CKelSLPConfig::ValidateUnicastMaximumWait(row.wait, row.timeouts), SameResult(kSuccess));
  }
}

TEST(BaseConfigFields, SetUnicastMaximumWaitLooksAtTheTimeoutsHeld) {
  CKelSLPConfig config;
  EXPECT_THAT(config.SetUnicastMaximumWait(500),
              SameResult(Refusal("The unicast maximum wait is too small (must be at least 501): 500.",
                                 "kelsd::CKelSLPConfig::SetUnicastMaximumWait "
                                 "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait "
                                 "kelsd::CKelSLPConfig::ValidateMaximumWait")));
  EXPECT_EQ(config.GetUnicastMaximumWait(), 4000);
  EXPECT_THAT(config.SetUnicastMaximumWait(501), SameResult(kSuccess));
  EXPECT_EQ(config.GetUnicastMaximumWait(), 501);

  ASSERT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(4000, {600}), SameResult(kSuccess));
  for (const int wait : {501, 600}) {
    EXPECT_THAT(
        config.SetUnicastMaximumWait(wait),
        SameResult(Refusal("The unicast maximum wait is too small (must be greater than first unicast "
                           "timeout 600):" +
                               std::to_string(wait) + ".",
                           "kelsd::CKelSLPConfig::SetUnicastMaximumWait "
                           "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait "
                           "kelsd::CKelSLPConfig::ValidateMaximumWait")));
    EXPECT_EQ(config.GetUnicastMaximumWait(), 4000);
  }
  EXPECT_THAT(config.SetUnicastMaximumWait(601), SameResult(kSuccess));
  EXPECT_EQ(config.GetUnicastMaximumWait(), 601);
}

struct TimeoutsRow {
  std::vector<int> timeouts;
  std::string detail;
};

// With a maximum wait of 4000.
const TimeoutsRow kRefusedTimeouts[] = {
    {{}, "No unicast timeout provided (provide at least one value)."},
    {{99}, "The unicast timeout value is too small (must be at least 100):99 at position 1."},
    {{500, 99}, "The unicast timeout value is too small (must be at least 100):99 at position 2."},
    {{5000, 99}, "The unicast timeout value is too small (must be at least 100):99 at position 2."},
    {{100, 200, 300, 400, 500, -7},
     "The unicast timeout value is too small (must be at least 100):-7 at position 6."},
    {{4000}, "First unicast timeout is too big (must be smaller than first unicast maximum wait 4000):4000."},
    {{4001, 100},
     "First unicast timeout is too big (must be smaller than first unicast maximum wait 4000):4001."},
};

TEST(BaseConfigFields, UnicastTimeoutsAreChecked) {
  for (const TimeoutsRow& row : kRefusedTimeouts) {
    CKelSLPConfig config;
    EXPECT_THAT(CKelSLPConfig::ValidateUnicastTimeouts(row.timeouts, 4000),
                SameResult(Refusal(row.detail,
                                   "kelsd::CKelSLPConfig::ValidateUnicastTimeouts "
                                   "kelsd::CKelSLPConfig::ValidateTimeouts")));
    EXPECT_THAT(config.SetUnicastTimeouts(row.timeouts),
                SameResult(Refusal(row.detail,
                                   "kelsd::CKelSLPConfig::SetUnicastTimeouts "
                                   "kelsd::CKelSLPConfig::ValidateUnicastTimeouts "
                                   "kelsd::CKelSLPConfig::ValidateTimeouts")));
    EXPECT_THAT(config.GetUnicastTimeouts(), ElementsAre(500, 750, 1100, 1600));
  }
}

TEST(BaseConfigFields, SetUnicastTimeoutsKeepsTheFirstSix) {
  const struct {
    std::vector<int> given;
    std::vector<int> kept;
  } rows[] = {
      {{100}, {100}},
      {{3999, 100}, {3999, 100}},
      {{600, 9000}, {600, 9000}},
      {{100, 200, 300, 400, 500, 600}, {100, 200, 300, 400, 500, 600}},
      {{100, 200, 300, 400, 500, 600, 700, 800}, {100, 200, 300, 400, 500, 600}},
      {{100, 200, 300, 400, 500, 600, 7}, {100, 200, 300, 400, 500, 600}},
  };
  for (const auto& row : rows) {
    CKelSLPConfig config;
    EXPECT_THAT(CKelSLPConfig::ValidateUnicastTimeouts(row.given, 4000), SameResult(kSuccess));
    EXPECT_THAT(config.SetUnicastTimeouts(row.given), SameResult(kSuccess));
    EXPECT_EQ(config.GetUnicastTimeouts(), row.kept);
    EXPECT_EQ(config.GetUnicastMaximumWait(), 4000);
  }
}

TEST(BaseConfigFields, CombinedSetterChecksTheWaitOnly) {
  for (const WaitRow& row : kAcceptedWaits) {
    CKelSLPConfig config;
    EXPECT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(row.wait, row.timeouts), SameResult(kSuccess));
    EXPECT_EQ(config.GetUnicastMaximumWait(), row.wait);
    EXPECT_EQ(config.GetUnicastTimeouts(), row.timeouts);
  }
  for (const WaitRow& row : kRefusedWaits) {
    CKelSLPConfig config;
    EXPECT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(row.wait, row.timeouts),
                SameResult(Refusal(row.detail,
                                   "kelsd::CKelSLPConfig::SetUnicasttMaximumWaitAndTimeouts "
                                   "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait "
                                   "kelsd::CKelSLPConfig::ValidateMaximumWait")));
    EXPECT_EQ(config.GetUnicastMaximumWait(), 4000);
    EXPECT_THAT(config.GetUnicastTimeouts(), ElementsAre(500, 750, 1100, 1600));
  }
}

TEST(BaseConfigFields, CombinedSetterKeepsTheFirstSix) {
  CKelSLPConfig config;
  EXPECT_THAT(config.SetUnicasttMaximumWaitAndTimeouts(900, {1, 2, 3, 4, 5, 6, 7}), SameResult(kSuccess));
  EXPECT_EQ(config.GetUnicastMaximumWait(), 900);
  EXPECT_THAT(config.GetUnicastTimeouts(), ElementsAre(1, 2, 3, 4, 5, 6));
}

TEST(BaseConfigFields, BroadcastAddressIsTrimmedAndInUpperCase) {
  const struct {
    std::string given;
    std::string stored;
  } rows[] = {
      {"  192.168.1.255 ", "192.168.1.255"},
      {"host.local", "HOST.LOCAL"},
      {" \t\r\n\v\f", ""},
      {"", ""},
      {"a b", "A B"},
  };
  for (const auto& row : rows) {
    CKelSLPConfig config;
    config.SetBroadcastAddr(row.given);
    EXPECT_EQ(config.GetBroadcastAddr(), row.stored);
  }
}

TEST(BaseConfigFields, InterfacesAreCleanedInTheirOrder) {
  const struct {
    std::vector<std::string> given;
    std::vector<std::string> stored;
  } rows[] = {
      {{" eth0", "", "ETH0"}, {"ETH0"}},
      {{"eth0", "eth0"}, {"ETH0", "ETH0"}},
      {{"10.0.0.9", "10.0.0.1", "10.0.0.9", " "}, {"10.0.0.9", "10.0.0.1"}},
      {{}, {}},
  };
  for (const auto& row : rows) {
    CKelSLPConfig config;
    config.SetInterfaces({"LO"});
    config.SetInterfaces(row.given);
    EXPECT_EQ(config.GetInterfaces(), row.stored);
  }
}

TEST(BaseConfigFields, UseDHCPIsStored) {
  CKelSLPConfig config;
  config.SetUseDHCP(false);
  EXPECT_FALSE(config.GetUseDHCP());
  config.SetUseDHCP(true);
  EXPECT_TRUE(config.GetUseDHCP());
}

TEST(BaseConfigFields, GettersReturnCopies) {
  CKelSLPConfig config;
  config.GetUnicastTimeouts().clear();
  config.GetBroadcastAddr().clear();
  config.SetInterfaces({"ETH0"});
  config.GetInterfaces().clear();
  EXPECT_THAT(config.GetUnicastTimeouts(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_EQ(config.GetBroadcastAddr(), "255.255.255.255");
  EXPECT_THAT(config.GetInterfaces(), ElementsAre("ETH0"));
}

}  // namespace
}  // namespace kelsd
