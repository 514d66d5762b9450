#include <gmock/gmock.h>

#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "support/same_result.h"
#include "unit/config/base_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const char* const kWaitTrail =
    "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait kelsd::CKelSLPConfig::ValidateMaximumWait";
const char* const kTimeoutsTrail =
    "kelsd::CKelSLPConfig::ValidateUnicastTimeouts kelsd::CKelSLPConfig::ValidateTimeouts";

TEST(BaseConfig, StartsWithTheDefaultsAndWithoutVersion) {
  BaseValues expected = BaseValues::Cleared();
  expected.open_slp_version = "";
  EXPECT_EQ(Read(CKelSLPConfig()), expected.Arguments());
}

TEST(BaseConfig, TakesEveryValueOfTheLongConstructor) {
  std::vector<SResult> problems;
  EXPECT_EQ(Read(Make<CKelSLPConfig>(BaseValues().Arguments(), problems)), BaseValues().Arguments());
  EXPECT_THAT(problems, IsEmpty());
}

TEST(BaseConfig, TakesEachFlagForItself) {
  const std::vector<bool BaseValues::*> flags = {&BaseValues::use_dhcp, &BaseValues::active_da_detection,
                                                 &BaseValues::security_enabled, &BaseValues::use_ipv4,
                                                 &BaseValues::use_ipv6};
  for (const auto flag : flags) {
    BaseValues values;
    for (const auto other : flags) {
      values.*other = other == flag;
    }
    std::vector<SResult> problems;
    EXPECT_EQ(Read(Make<CKelSLPConfig>(values.Arguments(), problems)), values.Arguments());
  }
}

TEST(BaseConfig, CleansTextsInTheLongConstructor) {
  BaseValues values;
  values.broadcast_addr = " host.local\t";
  values.interfaces = {" eth0", "", "ETH0", "b"};
  std::vector<SResult> problems;
  const auto config = Make<CKelSLPConfig>(values.Arguments(), problems);
  EXPECT_EQ(config.GetBroadcastAddr(), "HOST.LOCAL");
  EXPECT_THAT(config.GetInterfaces(), ElementsAre("ETH0", "B"));
}

TEST(BaseConfig, KeepsALongTimeoutListOfTheLongConstructor) {
  BaseValues values;
  values.unicast_timeouts = {100, 200, 300, 400, 500, 600, 700, 8};
  std::vector<SResult> problems;
  EXPECT_EQ(Read(Make<CKelSLPConfig>(values.Arguments(), problems)), values.Arguments());
  EXPECT_THAT(problems, IsEmpty());
}

TEST(BaseConfig, CollectsRefusalsInOrderBehindOlderOnesAndLeavesDefaults) {
  BaseValues values;
  values.multicast_ttl = 256;
  values.unicast_maximum_wait = 500;
  values.unicast_timeouts = {99};
  values.mtu = 575;
  std::vector<SResult> problems = {SResult(SResult::ERR_CONF_LOAD, "older", "trail")};
  const auto config = Make<CKelSLPConfig>(values.Arguments(), problems);

  EXPECT_THAT(
      problems,
      ElementsAre(SameResult(SResult(SResult::ERR_CONF_LOAD, "older", "trail")),
                  SameResult(Refusal("Multicast TTL is out of range [1, 255]: 256.",
                                     "kelsd::CKelSLPConfig::SetMulticastTTL "
                                     "kelsd::CKelSLPConfig::ValidateMulticastTTL")),
                  SameResult(Refusal("The unicast maximum wait is too small (must be at least 501): 500.",
                                     kWaitTrail)),
                  SameResult(Refusal("The unicast timeout value is too small (must be at least 100):99 at "
                                     "position 1.",
                                     kTimeoutsTrail)),
                  SameResult(Refusal("MTU is too small (must be at least 576): 575.",
                                     "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU"))));
  values.multicast_ttl = 255;
  values.unicast_maximum_wait = 4000;
  values.unicast_timeouts = {500, 750, 1100, 1600};
  values.mtu = 1400;
  EXPECT_EQ(Read(config), values.Arguments());
}

TEST(BaseConfig, RefusesWaitAndTimeoutsOfTheLongConstructorTogether) {
  const struct {
    int wait;
    std::vector<int> timeouts;
    std::vector<std::string> details;
  } rows[] = {
      {500, {200}, {"The unicast maximum wait is too small (must be at least 501): 500."}},
      {600, {200, 99}, {"The unicast timeout value is too small (must be at least 100):99 at position 2."}},
      {600,
       {600},
       {"The unicast maximum wait is too small (must be greater than first unicast timeout 600):600.",
        "First unicast timeout is too big (must be smaller than first unicast maximum wait 600):600."}},
      {600,
       {},
       {"The unicast maximum wait cannot be validated because no unicast timeouts were provided (must be "
        "greater than first unicast timeout).",
        "No unicast timeout provided (provide at least one value)."}},
  };
  for (const auto& row : rows) {
    BaseValues values;
    values.unicast_maximum_wait = row.wait;
    values.unicast_timeouts = row.timeouts;
    std::vector<SResult> problems;
    const auto config = Make<CKelSLPConfig>(values.Arguments(), problems);
    std::vector<std::string> details;
    details.reserve(problems.size());
    for (const SResult& problem : problems) {
      details.push_back(problem.GetErrorDetail());
    }
    EXPECT_EQ(details, row.details);
    EXPECT_EQ(config.GetUnicastMaximumWait(), 4000);
    EXPECT_THAT(config.GetUnicastTimeouts(), ElementsAre(500, 750, 1100, 1600));
  }
}

TEST(BaseConfig, ClearBringsBackAllButTheVersion) {
  std::vector<SResult> problems;
  auto config = Make<CKelSLPConfig>(BaseValues().Arguments(), problems);
  config.Clear();
  BaseValues expected = BaseValues::Cleared();
  expected.open_slp_version = "1.2.3";
  EXPECT_EQ(Read(config), expected.Arguments());
}

TEST(BaseConfig, CopiesAreIndependent) {
  std::vector<SResult> problems;
  const auto config = Make<CKelSLPConfig>(BaseValues().Arguments(), problems);
  CKelSLPConfig copy = config;
  copy.Clear();
  EXPECT_EQ(Read(config), BaseValues().Arguments());
  copy = config;
  EXPECT_EQ(Read(copy), BaseValues().Arguments());
}

TEST(BaseConfig, ComparesEverySettingButTheVersion) {
  EXPECT_THAT((WrongComparisons<CKelSLPConfig>(BaseChanges<BaseValues>())), IsEmpty());
}

TEST(BaseConfig, ValidatesToOneEntryWhenMadeWithoutVersion) {
  EXPECT_EQ(
      CKelSLPConfig().Validate(),
      (Deviations{{CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of  (should be 2.0.0)."}}));
}

TEST(BaseConfig, ValidatesToNothingWhenAllIsWell) {
  std::vector<SResult> problems;
  EXPECT_EQ(Make<CKelSLPConfig>(BaseValues::Cleared().Arguments(), problems).Validate(), Deviations());
}

TEST(BaseConfig, ValidateIgnoresSettingsThatHaveASetter) {
  BaseValues values = BaseValues::Cleared();
  const BaseValues others;
  values.multicast_ttl = others.multicast_ttl;
  values.unicast_maximum_wait = others.unicast_maximum_wait;
  values.unicast_timeouts = others.unicast_timeouts;
  values.mtu = others.mtu;
  values.broadcast_addr = others.broadcast_addr;
  values.use_dhcp = others.use_dhcp;
  values.interfaces = others.interfaces;
  std::vector<SResult> problems;
  EXPECT_EQ(Make<CKelSLPConfig>(values.Arguments(), problems).Validate(), Deviations());
}

TEST(BaseConfig, ValidateTellsEachDeviation) {
  const struct {
    void (*deviate)(BaseValues&);
    Deviations deviations;
  } rows[] = {
      {[](BaseValues& v) { v.active_da_detection = false; },
       {{CKelSLPConfig::PROP_ACTIVEDADETECTION,
         "Active directory agent detection is disabled (should be enabled)."}}},
      {[](BaseValues& v) { v.port = 428; },
       {{CKelSLPConfig::PROP_PORT, "The port should be 427, but is currently set to 428."}}},
      {[](BaseValues& v) { v.port = -1; },
       {{CKelSLPConfig::PROP_PORT, "The port should be 427, but is currently set to -1."}}},
      {[](BaseValues& v) { v.security_enabled = true; },
       {{CKelSLPConfig::PROP_SECURITYENABLED, "The security feature is enabled (should be disabled)."}}},
      {[](BaseValues& v) { v.use_ipv4 = false; },
       {{CKelSLPConfig::PROP_USEIPV4, "The IPv4 protocol support is disabled (should be enabled)."}}},
      {[](BaseValues& v) { v.use_ipv6 = true; },
       {{CKelSLPConfig::PROP_USEIPV6, "The IPv6 protocol support is enabled (should be disabled)."}}},
      {[](BaseValues& v) { v.open_slp_version = "2.0.0 "; },
       {{CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of 2.0.0  (should be 2.0.0)."}}},
      {[](BaseValues& v) { v.open_slp_version = "2.0"; },
       {{CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of 2.0 (should be 2.0.0)."}}},
      {[](BaseValues& v) { v = BaseValues(); },
       {{CKelSLPConfig::PROP_ACTIVEDADETECTION,
         "Active directory agent detection is disabled (should be enabled)."},
        {CKelSLPConfig::PROP_PORT, "The port should be 427, but is currently set to 1427."},
        {CKelSLPConfig::PROP_SECURITYENABLED, "The security feature is enabled (should be disabled)."},
        {CKelSLPConfig::PROP_USEIPV4, "The IPv4 protocol support is disabled (should be enabled)."},
        {CKelSLPConfig::PROP_USEIPV6, "The IPv6 protocol support is enabled (should be disabled)."},
        {CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of 1.2.3 (should be 2.0.0)."}}},
  };
  for (const auto& row : rows) {
    BaseValues values = BaseValues::Cleared();
    row.deviate(values);
    std::vector<SResult> problems;
    EXPECT_EQ(Make<CKelSLPConfig>(values.Arguments(), problems).Validate(), row.deviations);
  }
}

TEST(BaseConfig, IsPolymorphic) {
  EXPECT_TRUE(std::is_polymorphic_v<CKelSLPConfig>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CKelSLPConfig>);
}

}  // namespace
}  // namespace kelsd
