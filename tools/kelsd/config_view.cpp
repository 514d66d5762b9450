#include "config_view.h"

#include "attribute_view.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;

std::vector<Setting> BaseSettings(const CKelSLPConfig& config) {
  return {
      {CKelSLPConfig::PROP_MULTICASTTTL, config.GetMulticastTTL(), config.IsMulticastTTLDefaultSLP()},
      {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT, config.GetUnicastMaximumWait(),
       config.IsUnicastMaximumWaitDefaultSLP()},
      {CKelSLPConfig::PROP_UNICASTTIMEOUTS, config.GetUnicastTimeouts(),
       config.IsUnicastTimeoutsDefaultSLP()},
      {CKelSLPConfig::PROP_MTU, config.GetMTU(), config.IsMTUDefaultSLP()},
      {CKelSLPConfig::PROP_BROADCASTADDR, config.GetBroadcastAddr(), config.IsBroadcastAddrDefaultSLP()},
      {CKelSLPConfig::PROP_USEDHCP, config.GetUseDHCP(), config.IsUseDHCPDefaultSLP()},
      {CKelSLPConfig::PROP_INTERFACES, config.GetInterfaces(), config.IsInterfacesDefaultSLP()},
      {CKelSLPConfig::PROP_ACTIVEDADETECTION, config.GetActiveDADetection(),
       config.IsActiveDADetectionDefaultSLP()},
      {CKelSLPConfig::PROP_PORT, config.GetPPort(), config.IsPortDefaultSLP() != 0},
      {CKelSLPConfig::PROP_SECURITYENABLED, config.GetSecurityEnabled(),
       config.IsSecurityEnabledDefaultSLP()},
      {CKelSLPConfig::PROP_USEIPV4, config.GetUseIPv4(), config.IsUseIPv4DefaultSLP()},
      {CKelSLPConfig::PROP_USEIPV6, config.GetUseIPv6(), config.IsUseIPv6DefaultSLP()},
      {CKelSLPConfig::PROP_OPENSLPVERSION, config.GetOpenSLPVersion(), true, false},
  };
}

}  // namespace

std::vector<Setting> ClientSettings(const CKelSLPClientConfig& config) {
  std::vector<Setting> settings = BaseSettings(config);
  const std::vector<Setting> own = {
      {CKelSLPConfig::PROP_MAXRESULTS, config.GetMaxResults(), config.IsMaxResultsDefaultSLP()},
      {CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT, config.GetDADiscoveryMaximumWait(),
       config.IsDADiscoveryMaximumWaitDefaultSLP()},
      {CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS, config.GetDADiscoveryTimeouts(),
       config.IsDADiscoveryTimeoutsDefaultSLP()},
      {CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT, config.GetMulticastMaximumWait(),
       config.IsMulticastMaximumWaitDefaultSLP()},
      {CKelSLPConfig::PROP_MULTICASTTIMEOUTS, config.GetMulticastTimeouts(),
       config.IsMulticastTimeoutsDefaultSLP()},
  };
  settings.insert(settings.end(), own.begin(), own.end());
  return settings;
}

std::vector<Setting> ServiceSettings(const CKelSLPServiceConfig& config) {
  std::vector<Setting> settings = BaseSettings(config);
  const std::vector<Setting> own = {
      {CKelSLPConfig::PROP_ISDA, config.GetIsDA(), config.IsIsDADefaultSLP()},
      {CKelSLPConfig::PROP_DAHEARTBEAT, config.GetDAHeartBeat(), config.IsDAHeartBeatDefaultSLP()},
      {CKelSLPConfig::PROP_STALEDACHECKPERIOD, config.GetStaleDACheckPeriod(),
       config.IsStaleDACheckPeriodDefaultSLP()},
      {CKelSLPConfig::PROP_USESCOPES, config.GetUseScopes(), config.IsUseScopesDefaultSLP()},
      {CKelSLPConfig::PROP_DAADDRESSES, config.GetDAAddresses(), config.IsDAAddressesDefaultSLP()},
      {CKelSLPConfig::PROP_WATCHREGISTRATIONPID, config.GetWatchRegistrationPID(),
       config.IsWatchRegistrationPIDDefaultSLP()},
      {CKelSLPConfig::PROP_INDEXSRVTYPE, config.GetIndexSrvtype(), config.IsIndexSrvtypeDefaultSLP()},
      {CKelSLPConfig::PROP_INDEXEDATTRIBUTES, config.GetIndexedAttributes(),
       config.IsIndexedAttributesDefaultSLP()},
      {CKelSLPConfig::PROP_TRACEDATRAFFIC, config.GetTraceDATraffic(), config.IsTraceDATrafficDefaultSLP()},
      {CKelSLPConfig::PROP_TRACEREG, config.GetTraceReg(), config.IsTraceRegDefaultSLP()},
      {CKelSLPConfig::PROP_TRACEDROP, config.GetTraceDrop(), config.IsTraceDropDefaultSLP()},
      {CKelSLPConfig::PROP_TRACEMSG, config.GetTraceMsg(), config.IsTraceMsgDefaultSLP()},
      {CKelSLPConfig::PROP_APPENDLOG, config.GetAppendLog(), config.IsAppendLogDefaultSLP()},
      {CKelSLPConfig::PROP_ISBROADCASTONLY, config.GetIsBroadcastOnly(),
       config.IsIsBroadcastOnlyDefaultSLP()},
      {CKelSLPConfig::PROP_PASSIVEDADETECTION, config.GetPassiveDADetection(),
       config.IsPassiveDADetectionDefaultSLP()},
      {CKelSLPConfig::PROP_DAACTIVEDISCOVERYINTERVAL, config.GetDAActiveDiscoveryInterval(),
       config.IsDAActiveDiscoveryIntervalDefaultSLP()},
      {CKelSLPConfig::PROP_CHECKSOURCEADDR, config.GetCheckSourceAddr(),
       config.IsCheckSourceAddrDefaultSLP()},
  };
  settings.insert(settings.end(), own.begin(), own.end());
  return settings;
}

nlohmann::json ToJson(const Setting& setting) {
  nlohmann::json row = {{"property", CKelSLPConfig::ToStringKey(setting.property)},
                        {"label", CKelSLPConfig::ToString(setting.property)},
                        {"value", setting.value}};
  if (setting.has_standard) {
    row["isStandardDefault"] = setting.is_standard;
  }
  return row;
}

nlohmann::json ToJson(const std::vector<Setting>& settings) {
  nlohmann::json list = nlohmann::json::array();
  for (const Setting& setting : settings) {
    list.push_back(ToJson(setting));
  }
  return list;
}

Table ToTable(const std::vector<Setting>& settings) {
  Table table({{""}, {"PROPERTY"}, {"VALUE"}, {"MEANING", false, true}});
  for (const Setting& setting : settings) {
    table.AddRow({setting.is_standard ? "" : "*", CKelSLPConfig::ToStringKey(setting.property),
                  ToText(setting.value), CKelSLPConfig::ToString(setting.property)});
  }
  return table;
}

}  // namespace kelsd_tool
