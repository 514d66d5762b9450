#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "support/same_result.h"
#include "unit/config/client_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ClientConfig, StartsWithTheDefaultsAndWithoutVersion) {
  ClientValues expected = ClientValues::Cleared();
  expected.open_slp_version = "";
  CKelSLPClientConfig config;
  EXPECT_EQ(Read(config), expected.Arguments());
  EXPECT_EQ(config.GetTimeout(), 10000);
}

TEST(ClientConfig, TakesEveryValueOfTheLongConstructor) {
  std::vector<SResult> problems;
  auto config = Make<CKelSLPClientConfig>(ClientValues().Arguments(), problems);
  EXPECT_EQ(Read(config), ClientValues().Arguments());
  EXPECT_EQ(config.GetTimeout(), 6000);
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ClientConfig, KeepsLongTimeoutListsOfTheLongConstructor) {
  ClientValues values;
  values.da_discovery_timeouts = {100, 200, 300, 400, 500, 600, 7};
  values.multicast_timeouts = {101, 201, 301, 401, 501, 601, 8, 9};
  std::vector<SResult> problems;
  EXPECT_EQ(Read(Make<CKelSLPClientConfig>(values.Arguments(), problems)), values.Arguments());
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ClientConfig, CollectsRefusalsInOrderBehindOlderOnesAndLeavesDefaults) {
  ClientValues values;
  values.multicast_ttl = 0;
  values.unicast_maximum_wait = 500;
  values.mtu = 1;
  values.max_results = -2;
  values.da_discovery_maximum_wait = 500;
  values.da_discovery_timeouts = {99};
  values.multicast_maximum_wait = 600;
  values.multicast_timeouts = {600};
  std::vector<SResult> problems = {SResult(SResult::ERR_CONF_LOAD, "older", "trail")};
  auto config = Make<CKelSLPClientConfig>(values.Arguments(), problems);

  EXPECT_THAT(
      problems,
      ElementsAre(
          SameResult(SResult(SResult::ERR_CONF_LOAD, "older", "trail")),
          SameResult(Refusal("Multicast TTL is out of range [1, 255]: 0.",
                             "kelsd::CKelSLPConfig::SetMulticastTTL "
                             "kelsd::CKelSLPConfig::ValidateMulticastTTL")),
          SameResult(Refusal("The unicast maximum wait is too small (must be at least 501): 500.",
                             "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait "
                             "kelsd::CKelSLPConfig::ValidateMaximumWait")),
          SameResult(Refusal("MTU is too small (must be at least 576): 1.",
                             "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU")),
          SameResult(Refusal("Maximum number of results is too small (must be at least -1): -2.",
                             "kelsd::CKelSLPClientConfig::SetMaxResults "
                             "kelsd::CKelSLPClientConfig::ValidateMaxResults")),
          SameResult(
              Refusal("The directory agent discovery maximum wait is too small (must be at least 501): 500.",
                      "kelsd::CKelSLPClientConfig::ValidateDADiscoveryMaximumWait "
                      "kelsd::CKelSLPConfig::ValidateMaximumWait")),
          SameResult(Refusal("The directory agent discovery timeout value is too small (must be at least "
                             "100):99 at position 1.",
                             "kelsd::CKelSLPClientConfig::ValidateDADiscoveryTimeouts "
                             "kelsd::CKelSLPConfig::ValidateTimeouts")),
          SameResult(Refusal("The multicast maximum wait is too small (must be greater than first multicast "
                             "timeout 600):600.",
                             "kelsd::CKelSLPClientConfig::ValidateMulticastMaximumWait "
                             "kelsd::CKelSLPConfig::ValidateMaximumWait")),
          SameResult(Refusal("First multicast timeout is too big (must be smaller than first multicast "
                             "maximum wait 600):600.",
                             "kelsd::CKelSLPClientConfig::ValidateMulticastTimeouts "
                             "kelsd::CKelSLPConfig::ValidateTimeouts"))));
  const ClientValues cleared = ClientValues::Cleared();
  values.multicast_ttl = cleared.multicast_ttl;
  values.unicast_maximum_wait = cleared.unicast_maximum_wait;
  values.unicast_timeouts = cleared.unicast_timeouts;
  values.mtu = cleared.mtu;
  values.max_results = cleared.max_results;
  values.da_discovery_maximum_wait = cleared.da_discovery_maximum_wait;
  values.da_discovery_timeouts = cleared.da_discovery_timeouts;
  values.multicast_maximum_wait = cleared.multicast_maximum_wait;
  values.multicast_timeouts = cleared.multicast_timeouts;
  EXPECT_EQ(Read(config), values.Arguments());
  EXPECT_EQ(config.GetTimeout(), 10000);
}

TEST(ClientConfig, TakesOnePairOfTheLongConstructorWithoutTheOther) {
  ClientValues values;
  values.multicast_timeouts = {120, 99};
  std::vector<SResult> problems;
  auto first = Make<CKelSLPClientConfig>(values.Arguments(), problems);
  EXPECT_EQ(first.GetDADiscoveryMaximumWait(), 2500);
  EXPECT_THAT(first.GetDADiscoveryTimeouts(), ElementsAre(110, 210));
  EXPECT_EQ(first.GetMulticastMaximumWait(), 6000);
  EXPECT_THAT(first.GetMulticastTimeouts(), ElementsAre(500, 750, 1100, 1600, 2000));
  EXPECT_EQ(first.GetTimeout(), 8500);

  values = ClientValues();
  values.da_discovery_timeouts = {};
  auto second = Make<CKelSLPClientConfig>(values.Arguments(), problems);
  EXPECT_EQ(second.GetDADiscoveryMaximumWait(), 4000);
  EXPECT_EQ(second.GetMulticastMaximumWait(), 3500);
  EXPECT_THAT(second.GetMulticastTimeouts(), ElementsAre(120, 220));
  EXPECT_EQ(second.GetTimeout(), 7500);
  EXPECT_EQ(problems.size(), 3U);
}

TEST(ClientConfig, HoldsTheTimeoutOfTheLongConstructorAtTheLargestInteger) {
  ClientValues values;
  values.da_discovery_maximum_wait = std::numeric_limits<int>::max();
  values.multicast_maximum_wait = std::numeric_limits<int>::max();
  std::vector<SResult> problems;
  auto config = Make<CKelSLPClientConfig>(values.Arguments(), problems);
  EXPECT_EQ(Read(config), values.Arguments());
  EXPECT_EQ(config.GetTimeout(), std::numeric_limits<int>::max());
}

TEST(ClientConfig, ClearBringsBackAllButTheVersion) {
  std::vector<SResult> problems;
  auto config = Make<CKelSLPClientConfig>(ClientValues().Arguments(), problems);
  CKelSLPConfig& base = config;
  base.Clear();
  ClientValues expected = ClientValues::Cleared();
  expected.open_slp_version = "1.2.3";
  EXPECT_EQ(Read(config), expected.Arguments());
  EXPECT_EQ(config.GetTimeout(), 10000);
}

TEST(ClientConfig, ComparesEverySettingButVersionAndTimeout) {
  std::vector<Change<ClientValues>> changes = BaseChanges<ClientValues>();
  changes.insert(
      changes.end(),
      {
          {"maximum results", [](ClientValues& v) { ++v.max_results; }, true},
          {"DA discovery maximum wait", [](ClientValues& v) { ++v.da_discovery_maximum_wait; }, true},
          {"a DA discovery timeout", [](ClientValues& v) { ++v.da_discovery_timeouts.back(); }, true},
          {"number of DA discovery timeouts", [](ClientValues& v) { v.da_discovery_timeouts.pop_back(); },
           true},
          {"multicast maximum wait", [](ClientValues& v) { ++v.multicast_maximum_wait; }, true},
          {"a multicast timeout", [](ClientValues& v) { ++v.multicast_timeouts.back(); }, true},
          {"number of multicast timeouts", [](ClientValues& v) { v.multicast_timeouts.pop_back(); }, true},
      });
  EXPECT_THAT(WrongComparisons<CKelSLPClientConfig>(changes), IsEmpty());

  CKelSLPClientConfig scaled;
  CKelSLPClientConfig summed;
  ASSERT_TRUE(scaled.SetTimeout(12001).IsOk());
  ASSERT_TRUE(summed.SetTimeout(12001).IsOk());
  ASSERT_TRUE(summed.SetMulticastMaximumWait(7200).IsOk());
  ASSERT_TRUE(scaled.SetMulticastMaximumWait(7200).IsOk());
  ASSERT_TRUE(scaled.SetTimeout(12001).IsOk());
  ASSERT_TRUE(summed.SetMulticastMaximumWait(7201).IsOk());
  ASSERT_EQ(scaled.GetTimeout(), 12001);
  ASSERT_EQ(summed.GetTimeout(), 12001);
  EXPECT_TRUE(scaled.EqualTo(summed));
}

TEST(ClientConfig, ValidatesAsTheCommonSettingsDo) {
  std::vector<SResult> problems;
  const auto client = Make<CKelSLPClientConfig>(ClientValues().Arguments(), problems);
  const auto common = Make<CKelSLPConfig>(BaseValues().Arguments(), problems);
  EXPECT_EQ(client.Validate(), common.Validate());
  EXPECT_EQ(client.Validate().size(), 6U);
  const std::unique_ptr<CKelSLPConfig> base = std::make_unique<CKelSLPClientConfig>();
  EXPECT_EQ(
      base->Validate(),
      (Deviations{{CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of  (should be 2.0.0)."}}));
}

TEST(ClientConfig, GetTimeoutIsNotConst) {
  EXPECT_TRUE((std::is_same_v<decltype(&CKelSLPClientConfig::GetTimeout), int (CKelSLPClientConfig::*)()>));
}

}  // namespace
}  // namespace kelsd
