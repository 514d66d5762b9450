// Reading, checking and changing the daemon's settings one by one.
#include <string>
#include <vector>

#include "config/outcomes.h"
#include "foundation/text.h"
#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd {

bool CKelSLPServiceConfig::GetIsDA() const {
  return settings_.is_da;
}

int CKelSLPServiceConfig::GetDAHeartBeat() const {
  return settings_.da_heart_beat;
}

int CKelSLPServiceConfig::GetStaleDACheckPeriod() const {
  return settings_.stale_da_check_period;
}

std::vector<std::string> CKelSLPServiceConfig::GetUseScopes() const {
  return settings_.use_scopes;
}

std::vector<std::string> CKelSLPServiceConfig::GetDAAddresses() const {
  return settings_.da_addresses;
}

bool CKelSLPServiceConfig::GetWatchRegistrationPID() const {
  return settings_.watch_registration_pid;
}

bool CKelSLPServiceConfig::GetIndexSrvtype() const {
  return settings_.index_srvtype;
}

std::vector<std::string> CKelSLPServiceConfig::GetIndexedAttributes() const {
  return settings_.indexed_attributes;
}

bool CKelSLPServiceConfig::GetTraceDATraffic() const {
  return settings_.trace_da_traffic;
}

bool CKelSLPServiceConfig::GetTraceReg() const {
  return settings_.trace_reg;
}

bool CKelSLPServiceConfig::GetTraceDrop() const {
  return settings_.trace_drop;
}

bool CKelSLPServiceConfig::GetTraceMsg() const {
  return settings_.trace_msg;
}

bool CKelSLPServiceConfig::GetAppendLog() const {
  return settings_.append_log;
}

bool CKelSLPServiceConfig::GetIsBroadcastOnly() const {
  return settings_.is_broadcast_only;
}

bool CKelSLPServiceConfig::GetPassiveDADetection() const {
  return settings_.passive_da_detection;
}

int CKelSLPServiceConfig::GetDAActiveDiscoveryInterval() const {
  return settings_.da_active_discovery_interval;
}

bool CKelSLPServiceConfig::GetCheckSourceAddr() const {
  return settings_.check_source_addr;
}

void CKelSLPServiceConfig::SetIsDA(const bool& is_da) {
  settings_.is_da = is_da;
}

SResult CKelSLPServiceConfig::SetDAHeartBeat(const int& da_heart_beat) {
  return StoreIfOk(ValidateDAHeartBeat(da_heart_beat), "kelsd::CKelSLPServiceConfig::SetDAHeartBeat",
                   settings_.da_heart_beat, da_heart_beat);
}

SResult CKelSLPServiceConfig::SetStaleDACheckPeriod(const int& stale_da_check_period) {
  return StoreIfOk(ValidateStaleDACheckPeriod(stale_da_check_period),
                   "kelsd::CKelSLPServiceConfig::SetStaleDACheckPeriod", settings_.stale_da_check_period,
                   stale_da_check_period);
}

void CKelSLPServiceConfig::SetUseScopes(const std::vector<std::string>& use_scopes) {
  settings_.use_scopes = use_scopes.empty() ? USESCOPES_DEFAULT() : CleanList(use_scopes, false);
}

void CKelSLPServiceConfig::SetDAAddresses(const std::vector<std::string>& da_addresses) {
  settings_.da_addresses = CleanList(da_addresses, false);
}

void CKelSLPServiceConfig::SetWatchRegistrationPID(const bool& watch_registration_pid) {
  settings_.watch_registration_pid = watch_registration_pid;
}

void CKelSLPServiceConfig::SetIndexSrvtype(const bool& index_srvtype) {
  settings_.index_srvtype = index_srvtype;
}

void CKelSLPServiceConfig::SetIndexedAttributes(const std::vector<std::string>& indexed_attributes) {
  settings_.indexed_attributes = CleanList(indexed_attributes, true);
}

void CKelSLPServiceConfig::SetTraceDATraffic(const bool& trace_da_traffic) {
  settings_.trace_da_traffic = trace_da_traffic;
}

void CKelSLPServiceConfig::SetTraceReg(const bool& trace_reg) {
  settings_.trace_reg = trace_reg;
}

void CKelSLPServiceConfig::SetTraceDrop(const bool& trace_drop) {
  settings_.trace_drop = trace_drop;
}

void CKelSLPServiceConfig::SetTraceMsg(const bool& trace_msg) {
  settings_.trace_msg = trace_msg;
}

void CKelSLPServiceConfig::SetAppendLog(const bool& append_log) {
  settings_.append_log = append_log;
}

SResult CKelSLPServiceConfig::ValidateDAHeartBeat(const int& da_heart_beat) {
  return AtLeast(da_heart_beat, DAHEARTBEAT_MINIMUM, "Directory agent heart beat",
                 "kelsd::CKelSLPServiceConfig::ValidateDAHeartBeat");
}

SResult CKelSLPServiceConfig::ValidateStaleDACheckPeriod(const int& stale_da_check_period) {
  return AtLeast(stale_da_check_period, STALEDACHECKPERIOD_MINIMUM, "Stale directory agent check period",
                 "kelsd::CKelSLPServiceConfig::ValidateStaleDACheckPeriod");
}

}  // namespace kelsd
