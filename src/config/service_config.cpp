// Making, clearing, comparing and checking the daemon's settings as a whole.
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "config/outcomes.h"
#include "config/requirements.h"
#include "foundation/conversions.h"
#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd {

CKelSLPServiceConfig::CKelSLPServiceConfig() = default;

CKelSLPServiceConfig::CKelSLPServiceConfig(
    const int& multicast_ttl, const int& unicast_maximum_wait, const std::vector<int>& unicast_timeouts,
    const int& mtu, const std::string& broadcast_addr, const bool& use_dhcp,
    const std::vector<std::string>& interfaces, const bool& active_da_detection, const int& port,
    const bool& security_enabled, const bool& use_ipv4, const bool& use_ipv6,
    const std::string& open_slp_version, const bool& is_da, const int& da_heart_beat,
    const int& stale_da_check_period, const std::vector<std::string>& use_scopes,
    const std::vector<std::string>& da_addresses, const bool& watch_registration_pid,
    const bool& index_srvtype, const std::vector<std::string>& indexed_attributes,
    const bool& trace_da_traffic, const bool& trace_reg, const bool& trace_drop, const bool& trace_msg,
    const bool& append_log, const bool& is_broadcast_only, const bool& passive_da_detection,
    const int& da_active_discovery_interval, const bool& check_source_addr, std::vector<SResult>& problems)
    : CKelSLPConfig(multicast_ttl, unicast_maximum_wait, unicast_timeouts, mtu, broadcast_addr, use_dhcp,
                    interfaces, active_da_detection, port, security_enabled, use_ipv4, use_ipv6,
                    open_slp_version, problems) {
  SetIsDA(is_da);
  CollectFailure(SetDAHeartBeat(da_heart_beat), problems);
  CollectFailure(SetStaleDACheckPeriod(stale_da_check_period), problems);
  SetUseScopes(use_scopes);
  SetDAAddresses(da_addresses);
  SetWatchRegistrationPID(watch_registration_pid);
  SetIndexSrvtype(index_srvtype);
  SetIndexedAttributes(indexed_attributes);
  SetTraceDATraffic(trace_da_traffic);
  SetTraceReg(trace_reg);
  SetTraceDrop(trace_drop);
  SetTraceMsg(trace_msg);
  SetAppendLog(append_log);
  settings_.is_broadcast_only = is_broadcast_only;
  settings_.passive_da_detection = passive_da_detection;
  settings_.da_active_discovery_interval = da_active_discovery_interval;
  settings_.check_source_addr = check_source_addr;
}

CKelSLPServiceConfig::~CKelSLPServiceConfig() = default;

void CKelSLPServiceConfig::Clear() {
  CKelSLPConfig::Clear();
  settings_ = Settings();
}

std::map<CKelSLPConfig::EProperty, std::string> CKelSLPServiceConfig::Validate() const {
  std::map<EProperty, std::string> deviations = CKelSLPConfig::Validate();
  AddUnmet(
      {
          {settings_.watch_registration_pid, PROP_WATCHREGISTRATIONPID,
           "Automatic process based service de-registration is disabled (should be enabled)."},
          {!settings_.is_broadcast_only, PROP_ISBROADCASTONLY,
           "Forced use of broadcast instead of multicast is enabled (should be disabled)."},
          {settings_.passive_da_detection, PROP_PASSIVEDADETECTION,
           "Passive directory agent detection is disabled (should be enabled)."},
          {!settings_.trace_da_traffic, PROP_TRACEDATRAFFIC,
           "Logging of directory agent traffic tracing is enabled (should be disabled)."},
          {!settings_.trace_reg, PROP_TRACEREG,
           "Logging of service registration status is enabled (should be disabled)."},
          {!settings_.trace_drop, PROP_TRACEDROP,
           "Logging of dropped messages is enabled (should be disabled)."},
          {!settings_.trace_msg, PROP_TRACEMSG,
           "Logging of verbose message tracing is enabled (should be disabled)."},
          {!settings_.append_log, PROP_APPENDLOG,
           "Logging is configured to always append to the log file (should be disabled to overwrite the "
           "existing log file)."},
          {settings_.da_active_discovery_interval != 0, PROP_DAACTIVEDISCOVERYINTERVAL,
           "Active directory agent discovery requests are disabled (should be enabled with default value "
           "of " +
               Stringify(DAACTIVEDISCOVERYINTERVAL_DEFAULT) + ")."},
          {settings_.check_source_addr, PROP_CHECKSOURCEADDR,
           "Host check for registration and de-registration is disabled (should be enabled)."},
      },
      deviations);
  return deviations;
}

bool CKelSLPServiceConfig::EditableEqualTo(const CKelSLPServiceConfig& other) const {
  const auto editable = [](const Settings& s) {
    return std::tie(s.is_da, s.da_heart_beat, s.stale_da_check_period, s.use_scopes, s.da_addresses,
                    s.watch_registration_pid, s.index_srvtype, s.indexed_attributes, s.trace_da_traffic,
                    s.trace_reg, s.trace_drop, s.trace_msg, s.append_log);
  };
  return CKelSLPConfig::EditableEqualTo(other) && editable(settings_) == editable(other.settings_);
}

bool CKelSLPServiceConfig::EqualTo(const CKelSLPServiceConfig& other) const {
  const auto fixed = [](const Settings& s) {
    return std::tie(s.is_broadcast_only, s.passive_da_detection, s.da_active_discovery_interval,
                    s.check_source_addr);
  };
  return CKelSLPConfig::EqualTo(other) && EditableEqualTo(other) &&
         fixed(settings_) == fixed(other.settings_);
}

}  // namespace kelsd
