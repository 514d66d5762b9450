#include <gmock/gmock.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "unit/config/constants.h"
#include "unit/config/service_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ServiceConfigDefaults, AreTheGivenConstants) {
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::ISDA_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPServiceConfig::DAHEARTBEAT_DEFAULT, 10800));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPServiceConfig::DAHEARTBEAT_MINIMUM, 2000));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPServiceConfig::STALEDACHECKPERIOD_DEFAULT, 0));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPServiceConfig::STALEDACHECKPERIOD_MINIMUM, 0));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::WATCHREGISTRATIONPID_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::INDEXSRVTYPE_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::TRACEDATRAFFIC_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::TRACEREG_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::TRACEDROP_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::TRACEMSG_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::APPENDLOG_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::ISBROADCASTONLY_DEFAULT, false));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::PASSIVEDADETECTION_DEFAULT, true));
  EXPECT_TRUE(HoldsExactly<int>(CKelSLPServiceConfig::DAACTIVEDISCOVERYINTERVAL_DEFAULT, 900));
  EXPECT_TRUE(HoldsExactly<bool>(CKelSLPServiceConfig::CHECKSOURCEADDR_DEFAULT, true));
}

TEST(ServiceConfigDefaults, AreFreshLists) {
  CKelSLPServiceConfig::USESCOPES_DEFAULT().clear();
  EXPECT_THAT(CKelSLPServiceConfig::USESCOPES_DEFAULT(), ElementsAre("DEFAULT"));
  EXPECT_THAT(CKelSLPServiceConfig::DAADDRESSES_DEFAULT(), IsEmpty());
  EXPECT_THAT(CKelSLPServiceConfig::INDEXEDATTRIBUTES_DEFAULT(), IsEmpty());
}

/// What the predicates tell, in the order of the settings.
std::vector<bool> Predicates(const CKelSLPServiceConfig& config) {
  return {config.IsIsDADefaultSLP(),
          config.IsDAHeartBeatDefaultSLP(),
          config.IsStaleDACheckPeriodDefaultSLP(),
          config.IsUseScopesDefaultSLP(),
          config.IsDAAddressesDefaultSLP(),
          config.IsWatchRegistrationPIDDefaultSLP(),
          config.IsIndexSrvtypeDefaultSLP(),
          config.IsIndexedAttributesDefaultSLP(),
          config.IsTraceDATrafficDefaultSLP(),
          config.IsTraceRegDefaultSLP(),
          config.IsTraceDropDefaultSLP(),
          config.IsTraceMsgDefaultSLP(),
          config.IsAppendLogDefaultSLP(),
          config.IsIsBroadcastOnlyDefaultSLP(),
          config.IsPassiveDADetectionDefaultSLP(),
          config.IsDAActiveDiscoveryIntervalDefaultSLP(),
          config.IsCheckSourceAddrDefaultSLP()};
}

TEST(ServiceConfigDefaults, EachPredicateLooksAtItsOwnSetting) {
  void (*const changes[])(ServiceValues&) = {
      [](ServiceValues& v) { v.is_da = true; },
      [](ServiceValues& v) { v.da_heart_beat = 10801; },
      [](ServiceValues& v) { v.stale_da_check_period = 1; },
      [](ServiceValues& v) {
        v.use_scopes = {"DEFAULT", "LAB"};
      },
      [](ServiceValues& v) { v.da_addresses = {"10.0.0.1"}; },
      [](ServiceValues& v) { v.watch_registration_pid = false; },
      [](ServiceValues& v) { v.index_srvtype = true; },
      [](ServiceValues& v) { v.indexed_attributes = {"x-a"}; },
      [](ServiceValues& v) { v.trace_da_traffic = true; },
      [](ServiceValues& v) { v.trace_reg = true; },
      [](ServiceValues& v) { v.trace_drop = true; },
      [](ServiceValues& v) { v.trace_msg = true; },
      [](ServiceValues& v) { v.append_log = false; },
      [](ServiceValues& v) { v.is_broadcast_only = true; },
      [](ServiceValues& v) { v.passive_da_detection = false; },
      [](ServiceValues& v) { v.da_active_discovery_interval = 0; },
      [](ServiceValues& v) { v.check_source_addr = false; },
  };
  std::vector<SResult> problems;
  const std::vector<bool> all(std::size(changes), true);
  EXPECT_EQ(Predicates(CKelSLPServiceConfig()), all);
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    ServiceValues values = ServiceValues::Cleared();
    changes[i](values);
    std::vector<bool> expected = all;
    expected[i] = false;
    EXPECT_EQ(Predicates(Make<CKelSLPServiceConfig>(values.Arguments(), problems)), expected) << i;
  }
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ServiceConfigDefaults, NoScopeAtAllIsNotTheDefault) {
  CKelSLPServiceConfig config;
  config.SetUseScopes({" "});
  EXPECT_FALSE(config.IsUseScopesDefaultSLP());
}

}  // namespace
}  // namespace kelsd
