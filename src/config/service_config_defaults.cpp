// Defaults and limits of the daemon's settings, and whether a setting holds its default.
#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"

namespace kelsd {

const bool CKelSLPServiceConfig::ISDA_DEFAULT = false;
const int CKelSLPServiceConfig::DAHEARTBEAT_DEFAULT = 10800;
const int CKelSLPServiceConfig::DAHEARTBEAT_MINIMUM = 2000;
const int CKelSLPServiceConfig::STALEDACHECKPERIOD_DEFAULT = 0;
const int CKelSLPServiceConfig::STALEDACHECKPERIOD_MINIMUM = 0;
const bool CKelSLPServiceConfig::WATCHREGISTRATIONPID_DEFAULT = true;
const bool CKelSLPServiceConfig::INDEXSRVTYPE_DEFAULT = false;
const bool CKelSLPServiceConfig::TRACEDATRAFFIC_DEFAULT = false;
const bool CKelSLPServiceConfig::TRACEREG_DEFAULT = false;
const bool CKelSLPServiceConfig::TRACEDROP_DEFAULT = false;
const bool CKelSLPServiceConfig::TRACEMSG_DEFAULT = false;
const bool CKelSLPServiceConfig::APPENDLOG_DEFAULT = true;
const bool CKelSLPServiceConfig::ISBROADCASTONLY_DEFAULT = false;
const bool CKelSLPServiceConfig::PASSIVEDADETECTION_DEFAULT = true;
const int CKelSLPServiceConfig::DAACTIVEDISCOVERYINTERVAL_DEFAULT = 900;
const bool CKelSLPServiceConfig::CHECKSOURCEADDR_DEFAULT = true;

std::vector<std::string> CKelSLPServiceConfig::USESCOPES_DEFAULT() {
  return {"DEFAULT"};
}

std::vector<std::string> CKelSLPServiceConfig::DAADDRESSES_DEFAULT() {
  return {};
}

std::vector<std::string> CKelSLPServiceConfig::INDEXEDATTRIBUTES_DEFAULT() {
  return {};
}

bool CKelSLPServiceConfig::IsIsDADefaultSLP() const {
  return settings_.is_da == ISDA_DEFAULT;
}

bool CKelSLPServiceConfig::IsDAHeartBeatDefaultSLP() const {
  return settings_.da_heart_beat == DAHEARTBEAT_DEFAULT;
}

bool CKelSLPServiceConfig::IsStaleDACheckPeriodDefaultSLP() const {
  return settings_.stale_da_check_period == STALEDACHECKPERIOD_DEFAULT;
}

bool CKelSLPServiceConfig::IsUseScopesDefaultSLP() const {
  return settings_.use_scopes == USESCOPES_DEFAULT();
}

bool CKelSLPServiceConfig::IsDAAddressesDefaultSLP() const {
  return settings_.da_addresses == DAADDRESSES_DEFAULT();
}

bool CKelSLPServiceConfig::IsWatchRegistrationPIDDefaultSLP() const {
  return settings_.watch_registration_pid == WATCHREGISTRATIONPID_DEFAULT;
}

bool CKelSLPServiceConfig::IsIndexSrvtypeDefaultSLP() const {
  return settings_.index_srvtype == INDEXSRVTYPE_DEFAULT;
}

bool CKelSLPServiceConfig::IsIndexedAttributesDefaultSLP() const {
  return settings_.indexed_attributes == INDEXEDATTRIBUTES_DEFAULT();
}

bool CKelSLPServiceConfig::IsTraceDATrafficDefaultSLP() const {
  return settings_.trace_da_traffic == TRACEDATRAFFIC_DEFAULT;
}

bool CKelSLPServiceConfig::IsTraceRegDefaultSLP() const {
  return settings_.trace_reg == TRACEREG_DEFAULT;
}

bool CKelSLPServiceConfig::IsTraceDropDefaultSLP() const {
  return settings_.trace_drop == TRACEDROP_DEFAULT;
}

bool CKelSLPServiceConfig::IsTraceMsgDefaultSLP() const {
  return settings_.trace_msg == TRACEMSG_DEFAULT;
}

bool CKelSLPServiceConfig::IsAppendLogDefaultSLP() const {
  return settings_.append_log == APPENDLOG_DEFAULT;
}

bool CKelSLPServiceConfig::IsIsBroadcastOnlyDefaultSLP() const {
  return settings_.is_broadcast_only == ISBROADCASTONLY_DEFAULT;
}

bool CKelSLPServiceConfig::IsPassiveDADetectionDefaultSLP() const {
  return settings_.passive_da_detection == PASSIVEDADETECTION_DEFAULT;
}

bool CKelSLPServiceConfig::IsDAActiveDiscoveryIntervalDefaultSLP() const {
  return settings_.da_active_discovery_interval == DAACTIVEDISCOVERYINTERVAL_DEFAULT;
}

bool CKelSLPServiceConfig::IsCheckSourceAddrDefaultSLP() const {
  return settings_.check_source_addr == CHECKSOURCEADDR_DEFAULT;
}

}  // namespace kelsd
