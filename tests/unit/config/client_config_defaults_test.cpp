#include <gmock/gmock.h>

#include <cstddef>
#include <iterator>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "unit/config/client_values.h"
#include "unit/config/constants.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ClientConfigDefaults, AreTheGivenConstants) {
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MAXRESULTS_DEFAULT, -1));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MAXRESULTS_MINIMUM, -1));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::TIMEOUT_DEFAULT, 10000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT, 4000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT_SLP, 5000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT_KEL, 4000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_MINIMUM, 501));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::DADISCOVERYTIMEOUT_MINIMUM, 100));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT, 6000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT_SLP, 15000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT_KEL, 6000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_MINIMUM, 501));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPClientConfig::MULTICASTTIMEOUT_MINIMUM, 100));
}

TEST(ClientConfigDefaults, AreTheGivenLists) {
  EXPECT_THAT(CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_THAT(CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT_SLP(),
              ElementsAre(500, 750, 1000, 1500, 2000, 3000));
  EXPECT_THAT(CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT_KEL(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_THAT(CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT(), ElementsAre(500, 750, 1100, 1600, 2000));
  EXPECT_THAT(CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT_SLP(),
              ElementsAre(500, 750, 1000, 1500, 2000, 3000));
  EXPECT_THAT(CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT_KEL(), ElementsAre(500, 750, 1100, 1600, 2000));
}

/// What the predicates tell, in the order of the settings.
std::vector<bool> Predicates(const CKelSLPClientConfig& config) {
  return {config.IsMaxResultsDefaultSLP(), config.IsDADiscoveryMaximumWaitDefaultSLP(),
          config.IsDADiscoveryTimeoutsDefaultSLP(), config.IsMulticastMaximumWaitDefaultSLP(),
          config.IsMulticastTimeoutsDefaultSLP()};
}

TEST(ClientConfigDefaults, ClearedRecordIsStandardInMaximumResultsOnly) {
  EXPECT_EQ(Predicates(CKelSLPClientConfig()), (std::vector<bool>{true, false, false, false, false}));
}

TEST(ClientConfigDefaults, EachPredicateLooksAtItsOwnSetting) {
  ClientValues standard = ClientValues::Cleared();
  standard.da_discovery_maximum_wait = 5000;
  standard.da_discovery_timeouts = {500, 750, 1000, 1500, 2000, 3000};
  standard.multicast_maximum_wait = 15000;
  standard.multicast_timeouts = {500, 750, 1000, 1500, 2000, 3000};
  void (*const changes[])(ClientValues&) = {
      [](ClientValues& v) { v.max_results = 0; },
      [](ClientValues& v) { v.da_discovery_maximum_wait = 4999; },
      [](ClientValues& v) { v.da_discovery_timeouts.back() = 2999; },
      [](ClientValues& v) { v.multicast_maximum_wait = 15001; },
      [](ClientValues& v) { v.multicast_timeouts.pop_back(); },
  };
  std::vector<SResult> problems;
  const std::vector<bool> all(std::size(changes), true);
  EXPECT_EQ(Predicates(Make<CKelSLPClientConfig>(standard.Arguments(), problems)), all);
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    ClientValues values = standard;
    changes[i](values);
    std::vector<bool> expected = all;
    expected[i] = false;
    EXPECT_EQ(Predicates(Make<CKelSLPClientConfig>(values.Arguments(), problems)), expected) << i;
  }
  EXPECT_THAT(problems, IsEmpty());
}

}  // namespace
}  // namespace kelsd
