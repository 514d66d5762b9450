#include <gmock/gmock.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "unit/config/base_values.h"
#include "unit/config/constants.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(BaseConfigDefaults, AreTheGivenConstants) {
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::MULTICASTTTL_DEFAULT, 255));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::MULTICASTTTL_MINIMUM, 1));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::MULTICASTTTL_MAXIMUM, 255));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT, 4000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT_SLP, 5000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT_KEL, 4000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::UNICASTMAXIMUMWAIT_MINIMUM, 501));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::UNICASTTIMEOUT_MINIMUM, 100));
  EXPECT_TRUE(HoldsExactly<unsigned int>(CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES, 6U));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::MTU_DEFAULT, 1400));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::MTU_MINIMUM, 576));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPConfig::USEDHCP_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPConfig::ACTIVEDADETECTION_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPConfig::PORT_DEFAULT, 427));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPConfig::SECURITYENABLED_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPConfig::USEIPV4_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPConfig::USEIPV6_DEFAULT, false));
}

TEST(BaseConfigDefaults, AreFreshListsAndTexts) {
  CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT().clear();
  EXPECT_THAT(CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_THAT(CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_KEL(), ElementsAre(500, 750, 1100, 1600));
  EXPECT_THAT(CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP(), ElementsAre(500, 750, 1000, 1500, 2000, 3000));
  EXPECT_EQ(CKelSLPConfig::BROADCASTADDR_DEFAULT(), "255.255.255.255");
  EXPECT_THAT(CKelSLPConfig::INTERFACES_DEFAULT(), IsEmpty());
}

/// What the predicates tell, in the order of the settings.
std::vector<bool> Predicates(const CKelSLPConfig& config) {
  return {config.IsMulticastTTLDefaultSLP(),    config.IsUnicastMaximumWaitDefaultSLP(),
          config.IsUnicastTimeoutsDefaultSLP(), config.IsMTUDefaultSLP(),
          config.IsBroadcastAddrDefaultSLP(),   config.IsUseDHCPDefaultSLP(),
          config.IsInterfacesDefaultSLP(),      config.IsActiveDADetectionDefaultSLP(),
          config.IsPortDefaultSLP() == 1,       config.IsSecurityEnabledDefaultSLP(),
          config.IsUseIPv4DefaultSLP(),         config.IsUseIPv6DefaultSLP()};
}

TEST(BaseConfigDefaults, ClearedRecordFailsTheUnicastTimingPredicatesOnly) {
  EXPECT_EQ(Predicates(CKelSLPConfig()),
            (std::vector<bool>{true, false, false, true, true, true, true, true, true, true, true, true}));
}

TEST(BaseConfigDefaults, EachPredicateLooksAtItsOwnSetting) {
  BaseValues standard = BaseValues::Cleared();
  standard.unicast_maximum_wait = 5000;
  standard.unicast_timeouts = {500, 750, 1000, 1500, 2000, 3000};
  void (*const changes[])(BaseValues&) = {
      [](BaseValues& v) { v.multicast_ttl = 254; },
      [](BaseValues& v) { v.unicast_maximum_wait = 5001; },
      [](BaseValues& v) { v.unicast_timeouts.pop_back(); },
      [](BaseValues& v) { v.mtu = 1401; },
      [](BaseValues& v) { v.broadcast_addr = "255.255.255.254"; },
      [](BaseValues& v) { v.use_dhcp = false; },
      [](BaseValues& v) { v.interfaces = {"ETH0"}; },
      [](BaseValues& v) { v.active_da_detection = false; },
      [](BaseValues& v) { v.port = 426; },
      [](BaseValues& v) { v.security_enabled = true; },
      [](BaseValues& v) { v.use_ipv4 = false; },
      [](BaseValues& v) { v.use_ipv6 = true; },
  };
  std::vector<SResult> problems;
  const std::vector<bool> all(std::size(changes), true);
  EXPECT_EQ(Predicates(Make<CKelSLPConfig>(standard.Arguments(), problems)), all);
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    BaseValues values = standard;
    changes[i](values);
    std::vector<bool> expected = all;
    expected[i] = false;
    EXPECT_EQ(Predicates(Make<CKelSLPConfig>(values.Arguments(), problems)), expected) << i;
  }
  EXPECT_THAT(problems, IsEmpty());
}

TEST(BaseConfigDefaults, PortPredicateIsAnInteger) {
  EXPECT_TRUE((std::is_same_v<decltype(&CKelSLPConfig::IsPortDefaultSLP), int (CKelSLPConfig::*)() const>));
  BaseValues values;
  std::vector<SResult> problems;
  EXPECT_EQ(CKelSLPConfig().IsPortDefaultSLP(), 1);
  EXPECT_EQ(Make<CKelSLPConfig>(values.Arguments(), problems).IsPortDefaultSLP(), 0);
}

}  // namespace
}  // namespace kelsd
