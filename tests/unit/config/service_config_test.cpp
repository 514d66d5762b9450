#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "support/same_result.h"
#include "unit/config/service_values.h"

namespace kelsd {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ServiceConfig, StartsWithTheDefaultsAndWithoutVersion) {
  ServiceValues expected = ServiceValues::Cleared();
  expected.open_slp_version = "";
  EXPECT_EQ(Read(CKelSLPServiceConfig()), expected.Arguments());
}

TEST(ServiceConfig, TakesEveryValueOfTheLongConstructor) {
  std::vector<SResult> problems;
  EXPECT_EQ(Read(Make<CKelSLPServiceConfig>(ServiceValues().Arguments(), problems)),
            ServiceValues().Arguments());
  EXPECT_THAT(problems, IsEmpty());
}

TEST(ServiceConfig, TakesEachFlagOfTheLongConstructorForItself) {
  for (const ServiceFlag& flag : ServiceFlags()) {
    SCOPED_TRACE(flag.name);
    ServiceValues values;
    for (const ServiceFlag& other : ServiceFlags()) {
      values.*other.value = other.name == flag.name;
    }
    std::vector<SResult> problems;
    EXPECT_EQ(Read(Make<CKelSLPServiceConfig>(values.Arguments(), problems)), values.Arguments());
  }
}

TEST(ServiceConfig, CleansListsInTheLongConstructor) {
  ServiceValues values;
  values.use_scopes = {};
  values.da_addresses = {" fe80::1", "", "10.0.0.1", "10.0.0.1"};
  values.indexed_attributes = {"X-Version ", "x-version", "X-A"};
  std::vector<SResult> problems;
  const auto config = Make<CKelSLPServiceConfig>(values.Arguments(), problems);
  EXPECT_THAT(config.GetUseScopes(), ElementsAre("DEFAULT"));
  EXPECT_THAT(config.GetDAAddresses(), ElementsAre("FE80::1", "10.0.0.1"));
  EXPECT_THAT(config.GetIndexedAttributes(), ElementsAre("x-version", "x-a"));
}

TEST(ServiceConfig, CollectsRefusalsInOrderBehindOlderOnesAndLeavesDefaults) {
  ServiceValues values;
  values.multicast_ttl = 0;
  values.mtu = 575;
  values.da_heart_beat = 1999;
  values.stale_da_check_period = -1;
  values.da_active_discovery_interval = -1;
  std::vector<SResult> problems = {SResult(SResult::ERR_CONF_LOAD, "older", "trail")};
  const auto config = Make<CKelSLPServiceConfig>(values.Arguments(), problems);
  EXPECT_THAT(
      problems,
      ElementsAre(
          SameResult(SResult(SResult::ERR_CONF_LOAD, "older", "trail")),
          SameResult(Refusal("Multicast TTL is out of range [1, 255]: 0.",
                             "kelsd::CKelSLPConfig::SetMulticastTTL "
                             "kelsd::CKelSLPConfig::ValidateMulticastTTL")),
          SameResult(Refusal("MTU is too small (must be at least 576): 575.",
                             "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU")),
          SameResult(Refusal("Directory agent heart beat is too small (must be at least 2000): 1999.",
                             "kelsd::CKelSLPServiceConfig::SetDAHeartBeat "
                             "kelsd::CKelSLPServiceConfig::ValidateDAHeartBeat")),
          SameResult(Refusal("Stale directory agent check period is too small (must be at least 0): -1.",
                             "kelsd::CKelSLPServiceConfig::SetStaleDACheckPeriod "
                             "kelsd::CKelSLPServiceConfig::ValidateStaleDACheckPeriod"))));
  values.multicast_ttl = 255;
  values.mtu = 1400;
  values.da_heart_beat = 10800;
  values.stale_da_check_period = 0;
  EXPECT_EQ(Read(config), values.Arguments());
}

TEST(ServiceConfig, ClearBringsBackAllButTheVersion) {
  std::vector<SResult> problems;
  auto config = Make<CKelSLPServiceConfig>(ServiceValues().Arguments(), problems);
  CKelSLPConfig& base = config;
  base.Clear();
  ServiceValues expected = ServiceValues::Cleared();
  expected.open_slp_version = "1.2.3";
  EXPECT_EQ(Read(config), expected.Arguments());
}

TEST(ServiceConfig, ComparesEverySettingButTheVersion) {
  std::vector<Change<ServiceValues>> changes = BaseChanges<ServiceValues>();
  for (const ServiceFlag& flag : ServiceFlags()) {
    const auto value = flag.value;
    changes.push_back(
        {flag.name, [value](ServiceValues& v) { v.*value = !(v.*value); }, flag.set != nullptr});
  }
  changes.insert(
      changes.end(),
      {
          {"DA heart beat", [](ServiceValues& v) { ++v.da_heart_beat; }, true},
          {"stale DA check period", [](ServiceValues& v) { ++v.stale_da_check_period; }, true},
          {"a scope", [](ServiceValues& v) { v.use_scopes.back() += "X"; }, true},
          {"number of scopes", [](ServiceValues& v) { v.use_scopes.pop_back(); }, true},
          {"order of DA addresses",
           [](ServiceValues& v) {
             v.da_addresses = {"10.0.0.1", "10.0.0.2"};
           },
           true},
          {"number of DA addresses", [](ServiceValues& v) { v.da_addresses.clear(); }, true},
          {"an indexed attribute", [](ServiceValues& v) { v.indexed_attributes.back() = "x-c"; }, true},
          {"DA active discovery interval", [](ServiceValues& v) { ++v.da_active_discovery_interval; }, false},
      });
  EXPECT_THAT(WrongComparisons<CKelSLPServiceConfig>(changes), IsEmpty());
}

const char* const kAppendLogMessage =
    "Logging is configured to always append to the log file (should be disabled to overwrite the existing "
    "log file).";

TEST(ServiceConfig, ValidatesToVersionAndLogWhenCleared) {
  const std::unique_ptr<CKelSLPConfig> config = std::make_unique<CKelSLPServiceConfig>();
  EXPECT_EQ(
      config->Validate(),
      (Deviations{{CKelSLPConfig::PROP_OPENSLPVERSION, "Conflicting SLP version of  (should be 2.0.0)."},
                  {CKelSLPConfig::PROP_APPENDLOG, kAppendLogMessage}}));
}

/// The cleared values with the change that the library asks for.
ServiceValues WithoutDeviation() {
  ServiceValues values = ServiceValues::Cleared();
  values.append_log = false;
  return values;
}

TEST(ServiceConfig, ValidatesToNothingWhenAllIsWell) {
  ServiceValues values = WithoutDeviation();
  const ServiceValues others;
  values.is_da = others.is_da;
  values.da_heart_beat = others.da_heart_beat;
  values.stale_da_check_period = others.stale_da_check_period;
  values.use_scopes = others.use_scopes;
  values.da_addresses = others.da_addresses;
  values.index_srvtype = others.index_srvtype;
  values.indexed_attributes = others.indexed_attributes;
  values.da_active_discovery_interval = 1;
  std::vector<SResult> problems;
  EXPECT_EQ(Make<CKelSLPServiceConfig>(values.Arguments(), problems).Validate(), Deviations());
  EXPECT_EQ(Make<CKelSLPServiceConfig>(WithoutDeviation().Arguments(), problems).Validate(), Deviations());
}

TEST(ServiceConfig, ValidateTellsEachDeviation) {
  const struct {
    void (*deviate)(ServiceValues&);
    CKelSLPConfig::EProperty property;
    std::string message;
  } rows[] = {
      {[](ServiceValues& v) { v.watch_registration_pid = false; }, CKelSLPConfig::PROP_WATCHREGISTRATIONPID,
       "Automatic process based service de-registration is disabled (should be enabled)."},
      {[](ServiceValues& v) { v.is_broadcast_only = true; }, CKelSLPConfig::PROP_ISBROADCASTONLY,
       "Forced use of broadcast instead of multicast is enabled (should be disabled)."},
      {[](ServiceValues& v) { v.passive_da_detection = false; }, CKelSLPConfig::PROP_PASSIVEDADETECTION,
       "Passive directory agent detection is disabled (should be enabled)."},
      {[](ServiceValues& v) { v.trace_da_traffic = true; }, CKelSLPConfig::PROP_TRACEDATRAFFIC,
       "Logging of directory agent traffic tracing is enabled (should be disabled)."},
      {[](ServiceValues& v) { v.trace_reg = true; }, CKelSLPConfig::PROP_TRACEREG,
       "Logging of service registration status is enabled (should be disabled)."},
      {[](ServiceValues& v) { v.trace_drop = true; }, CKelSLPConfig::PROP_TRACEDROP,
       "Logging of dropped messages is enabled (should be disabled)."},
      {[](ServiceValues& v) { v.trace_msg = true; }, CKelSLPConfig::PROP_TRACEMSG,
       "Logging of verbose message tracing is enabled (should be disabled)."},
      {[](ServiceValues& v) { v.append_log = true; }, CKelSLPConfig::PROP_APPENDLOG, kAppendLogMessage},
      {[](ServiceValues& v) { v.da_active_discovery_interval = 0; },
       CKelSLPConfig::PROP_DAACTIVEDISCOVERYINTERVAL,
       "Active directory agent discovery requests are disabled (should be enabled with default value of "
       "900)."},
      {[](ServiceValues& v) { v.check_source_addr = false; }, CKelSLPConfig::PROP_CHECKSOURCEADDR,
       "Host check for registration and de-registration is disabled (should be enabled)."},
      {[](ServiceValues& v) { v.port = 1; }, CKelSLPConfig::PROP_PORT,
       "The port should be 427, but is currently set to 1."},
  };
  Deviations all;
  ServiceValues deviating = WithoutDeviation();
  std::vector<SResult> problems;
  for (const auto& row : rows) {
    ServiceValues values = WithoutDeviation();
    row.deviate(values);
    EXPECT_EQ(Make<CKelSLPServiceConfig>(values.Arguments(), problems).Validate(),
              (Deviations{{row.property, row.message}}));
    row.deviate(deviating);
    all[row.property] = row.message;
  }
  EXPECT_EQ(Make<CKelSLPServiceConfig>(deviating.Arguments(), problems).Validate(), all);
}

}  // namespace
}  // namespace kelsd
