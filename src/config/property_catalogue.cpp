// The SLP properties with their labels and keys. Tables made at compile time: any thread may call, at any
// time.
#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kelsd/CKelSLPConfig.h"

namespace kelsd {
namespace {

struct Property {
  CKelSLPConfig::EProperty number;
  std::string_view label;
  std::string_view key;
};

constexpr std::array<Property, CKelSLPConfig::PROP_APPCONFIGFILE + 1> kProperties = {{
    {CKelSLPConfig::PROP_UNKNOWN, "unknown", "unknown"},
    {CKelSLPConfig::PROP_ISDA, "Is Directory Agent", "net.slp.isDA"},
    {CKelSLPConfig::PROP_DAHEARTBEAT, "Directory Agent Heart Beat", "net.slp.DAHeartBeat"},
    {CKelSLPConfig::PROP_DAATTRIBUTES, "Directory Agent Attributes", "net.slp.DAAttributes"},
    {CKelSLPConfig::PROP_USESCOPES, "Use Scopes", "net.slp.useScopes"},
    {CKelSLPConfig::PROP_DAADDRESSES, "Directory Agent Addresses", "net.slp.DAAddresses"},
    {CKelSLPConfig::PROP_TRACEDATRAFFIC, "Trace Directory Agent Traffic", "net.slp.traceDATraffic"},
    {CKelSLPConfig::PROP_TRACEMSG, "Trace Messages", "net.slp.traceMsg"},
    {CKelSLPConfig::PROP_TRACEDROP, "Trace Drops", "net.slp.traceDrop"},
    {CKelSLPConfig::PROP_TRACEREG, "Trace Registrations", "net.slp.traceReg"},
    {CKelSLPConfig::PROP_APPENDLOG, "Append Log", "net.slp.appendLog"},
    {CKelSLPConfig::PROP_SERIALIZEDREGURL, "Serialized Registration URL", "net.slp.serializedRegURL"},
    {CKelSLPConfig::PROP_ISBROADCASTONLY, "Is Broadcast Only", "net.slp.isBroadcastOnly"},
    {CKelSLPConfig::PROP_PASSIVEDADETECTION, "Passive Directory Agent Detection",
     "net.slp.passiveDADetection"},
    {CKelSLPConfig::PROP_MULTICASTTTL, "Multicast TTL", "net.slp.multicastTTL"},
    {CKelSLPConfig::PROP_DAACTIVEDISCOVERYINTERVAL, "Directory Agent Active Discovery Interval",
     "net.slp.DAActiveDiscoveryInterval"},
    {CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT, "Multicast Maximum Wait", "net.slp.multicastMaximumWait"},
    {CKelSLPConfig::PROP_MULTICASTTIMEOUTS, "Multicast Timeouts", "net.slp.multicastTimeouts"},
    {CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS, "Directory Agent Discovery Timeouts",
     "net.slp.DADiscoveryTimeouts"},
    {CKelSLPConfig::PROP_DATAGRAMTIMEOUTS, "Datagram Timeouts", "net.slp.datagramTimeouts"},
    {CKelSLPConfig::PROP_RANDOMWAITBOUND, "Random Wait Bound", "net.slp.randomWaitBound"},
    {CKelSLPConfig::PROP_MTU, "MTU", "net.slp.MTU"},
    {CKelSLPConfig::PROP_INTERFACES, "Interfaces", "net.slp.interfaces"},
    {CKelSLPConfig::PROP_SAATTRIBUTES, "Service Agent Attributes", "net.slp.SAAttributes"},
    {CKelSLPConfig::PROP_LOCALE, "Locale", "net.slp.locale"},
    {CKelSLPConfig::PROP_MAXRESULTS, "Maximum Results", "net.slp.maxResults"},
    {CKelSLPConfig::PROP_TYPEHINT, "Type Hint", "net.slp.typeHint"},
    {CKelSLPConfig::PROP_PREFERSLPV1, "Prefer SLPv1", "net.slp.preferSLPv1"},
    {CKelSLPConfig::PROP_SECURITYENABLED, "Security Enabled", "net.slp.securityEnabled"},
    {CKelSLPConfig::PROP_WATCHREGISTRATIONPID, "Watch Registration PID", "net.slp.watchRegistrationPID"},
    {CKelSLPConfig::PROP_OPENSLPVERSION, "OpenSLP Version", "net.slp.OpenSLPVersion"},
    {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT, "Unicast Maximum Wait", "net.slp.unicastMaximumWait"},
    {CKelSLPConfig::PROP_UNICASTTIMEOUTS, "Unicast Timeouts", "net.slp.unicastTimeouts"},
    {CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT, "Directory Agent Discovery Maximum Wait",
     "net.slp.DADiscoveryMaximumWait"},
    {CKelSLPConfig::PROP_ACTIVEDADETECTION, "Active Directory Agent Detection", "net.slp.activeDADetection"},
    {CKelSLPConfig::PROP_CHECKSOURCEADDR, "Check Source Address", "net.slp.checkSourceAddr"},
    {CKelSLPConfig::PROP_BROADCASTADDR, "Broadcast Address", "net.slp.broadcastAddr"},
    {CKelSLPConfig::PROP_PORT, "Port", "net.slp.port"},
    {CKelSLPConfig::PROP_USEDHCP, "Use DHCP", "net.slp.useDHCP"},
    {CKelSLPConfig::PROP_STALEDACHECKPERIOD, "Stale Directory Agent Check Period",
     "net.slp.staleDACheckPeriod"},
    {CKelSLPConfig::PROP_INDEXSRVTYPE, "Index Service Type", "net.slp.indexSrvtype"},
    {CKelSLPConfig::PROP_INDEXEDATTRIBUTES, "Indexed Attributes", "net.slp.indexedAttributes"},
    {CKelSLPConfig::PROP_USEIPV6, "Use IPv6", "net.slp.useIPv6"},
    {CKelSLPConfig::PROP_USEIPV4, "Use IPv4", "net.slp.useIPv4"},
    {CKelSLPConfig::PROP_OPENSLPCONFIGFILE, "Main Configuration File", "net.slp.OpenSLPConfigFile"},
    {CKelSLPConfig::PROP_ENVCONFIGFILE, "Environment Configuration File", "net.slp.EnvConfigFile"},
    {CKelSLPConfig::PROP_APPCONFIGFILE, "Application Configuration File", "net.slp.AppConfigFile"},
}};

constexpr bool NumbersAreDense() {
  for (std::size_t i = 0; i < kProperties.size(); ++i) {
    if (kProperties[i].number != static_cast<int>(i)) {
      return false;
    }
  }
  return true;
}
static_assert(NumbersAreDense(), "a property is found by its number as index");

constexpr auto SortedByKey() {
  auto properties = kProperties;
  std::sort(properties.begin(), properties.end(),
            [](const Property& a, const Property& b) { return a.key < b.key; });
  return properties;
}
constexpr auto kPropertiesByKey = SortedByKey();

/// The row of `property`, that of PROP_UNKNOWN for a number that is none.
const Property& Find(CKelSLPConfig::EProperty property) {
  return kProperties.at(CKelSLPConfig::IsValidEProperty(property) ? property : CKelSLPConfig::PROP_UNKNOWN);
}

}  // namespace

std::string CKelSLPConfig::ToString(EProperty property) {
  return std::string(Find(property).label);
}

std::string CKelSLPConfig::ToStringKey(EProperty property) {
  return std::string(Find(property).key);
}

CKelSLPConfig::EProperty CKelSLPConfig::StringKeyToEProperty(const std::string& key, bool* not_found) {
  const auto found =
      std::lower_bound(kPropertiesByKey.begin(), kPropertiesByKey.end(), key,
                       [](const Property& property, const std::string& text) { return property.key < text; });
  if (found != kPropertiesByKey.end() && found->key == key) {
    return found->number;
  }
  if (not_found != nullptr) {
    *not_found = true;
  }
  return PROP_UNKNOWN;
}

bool CKelSLPConfig::IsValidEProperty(const int& value) {
  return static_cast<unsigned int>(value) < kProperties.size();
}

std::vector<CKelSLPConfig::EProperty> CKelSLPConfig::GetEProperty() {
  std::vector<EProperty> properties;
  properties.reserve(kProperties.size() - 1);
  for (const Property& property : kProperties) {
    if (property.number != PROP_UNKNOWN) {
      properties.push_back(property.number);
    }
  }
  return properties;
}

}  // namespace kelsd
