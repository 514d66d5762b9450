// The values of a daemon's record as one comparable and printable whole.
#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "unit/config/base_values.h"

namespace kelsd {

/// Accepted values of which none is a default and no two of a kind are equal.
struct ServiceValues : BaseValues {
  bool is_da = true;
  int da_heart_beat = 3000;
  int stale_da_check_period = 60;
  std::vector<std::string> use_scopes = {"LAB", "TAMRO"};
  std::vector<std::string> da_addresses = {"10.0.0.2", "10.0.0.1"};
  bool watch_registration_pid = false;
  bool index_srvtype = true;
  std::vector<std::string> indexed_attributes = {"x-b", "x-a"};
  bool trace_da_traffic = true;
  bool trace_reg = true;
  bool trace_drop = true;
  bool trace_msg = true;
  bool append_log = false;
  bool is_broadcast_only = true;
  bool passive_da_detection = false;
  int da_active_discovery_interval = 901;
  bool check_source_addr = false;

  /// What `Clear` gives, with the version that the library requires.
  static ServiceValues Cleared() {
    ServiceValues values;
    static_cast<BaseValues&>(values) = BaseValues::Cleared();
    values.is_da = false;
    values.da_heart_beat = 10800;
    values.stale_da_check_period = 0;
    values.use_scopes = {"DEFAULT"};
    values.da_addresses = {};
    values.watch_registration_pid = true;
    values.index_srvtype = false;
    values.indexed_attributes = {};
    values.trace_da_traffic = false;
    values.trace_reg = false;
    values.trace_drop = false;
    values.trace_msg = false;
    values.append_log = true;
    values.is_broadcast_only = false;
    values.passive_da_detection = true;
    values.da_active_discovery_interval = 900;
    values.check_source_addr = true;
    return values;
  }

  auto Arguments() const {
    return std::tuple_cat(
        BaseValues::Arguments(),
        std::make_tuple(is_da, da_heart_beat, stale_da_check_period, use_scopes, da_addresses,
                        watch_registration_pid, index_srvtype, indexed_attributes, trace_da_traffic,
                        trace_reg, trace_drop, trace_msg, append_log, is_broadcast_only, passive_da_detection,
                        da_active_discovery_interval, check_source_addr));
  }
};

/// What the getters tell, in the order of `ServiceValues::Arguments`.
inline auto Read(const CKelSLPServiceConfig& config) {
  return std::tuple_cat(
      Read(static_cast<const CKelSLPConfig&>(config)),
      std::make_tuple(config.GetIsDA(), config.GetDAHeartBeat(), config.GetStaleDACheckPeriod(),
                      config.GetUseScopes(), config.GetDAAddresses(), config.GetWatchRegistrationPID(),
                      config.GetIndexSrvtype(), config.GetIndexedAttributes(), config.GetTraceDATraffic(),
                      config.GetTraceReg(), config.GetTraceDrop(), config.GetTraceMsg(),
                      config.GetAppendLog(), config.GetIsBroadcastOnly(), config.GetPassiveDADetection(),
                      config.GetDAActiveDiscoveryInterval(), config.GetCheckSourceAddr()));
}

/// A flag of the daemon's record: its value, and its setter where one exists.
struct ServiceFlag {
  std::string name;
  bool ServiceValues::*value;
  void (CKelSLPServiceConfig::*set)(const bool&);
};

inline std::vector<ServiceFlag> ServiceFlags() {
  return {
      {"is DA", &ServiceValues::is_da, &CKelSLPServiceConfig::SetIsDA},
      {"watch registration PID", &ServiceValues::watch_registration_pid,
       &CKelSLPServiceConfig::SetWatchRegistrationPID},
      {"index service type", &ServiceValues::index_srvtype, &CKelSLPServiceConfig::SetIndexSrvtype},
      {"trace DA traffic", &ServiceValues::trace_da_traffic, &CKelSLPServiceConfig::SetTraceDATraffic},
      {"trace registrations", &ServiceValues::trace_reg, &CKelSLPServiceConfig::SetTraceReg},
      {"trace drops", &ServiceValues::trace_drop, &CKelSLPServiceConfig::SetTraceDrop},
      {"trace messages", &ServiceValues::trace_msg, &CKelSLPServiceConfig::SetTraceMsg},
      {"append log", &ServiceValues::append_log, &CKelSLPServiceConfig::SetAppendLog},
      {"is broadcast only", &ServiceValues::is_broadcast_only, nullptr},
      {"passive DA detection", &ServiceValues::passive_da_detection, nullptr},
      {"check source address", &ServiceValues::check_source_addr, nullptr},
  };
}

}  // namespace kelsd
