#include "service/config_file_values.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

#include "foundation/conversions.h"
#include "foundation/text.h"
#include "slp/slp_impl.h"

namespace kelsd {

namespace {

using Config = CKelSLPServiceConfig;

std::optional<std::string> TextOf(CKelSLPConfig::EProperty property, const CSLPConfAccess& store) {
  const std::string key = CKelSLPConfig::ToStringKey(property);
  return store.HasKey(key) ? std::optional(store.GetValue(key)) : std::nullopt;
}

template <typename T>
SResult ReadParsed(T& value, CKelSLPConfig::EProperty property, const CSLPConfAccess& store,
                   const std::string& reader, SResult (*parse)(T&, const std::string&)) {
  const std::optional<std::string> text = TextOf(property, store);
  if (!text) {
    return {SResult::ERR_SUCCESS};
  }
  const SResult parsed = parse(value, *text);
  if (parsed.IsNotOk()) {
    return {SResult::ERR_PROPERTY_PARSE,
            "Property: " + CKelSLPConfig::ToStringKey(property) + ". " + parsed.GetErrorDetail(),
            reader + " " + parsed.GetErrorDebug()};
  }
  return {SResult::ERR_SUCCESS};
}

std::string TimeoutsText(const std::vector<int>& timeouts) {
  std::vector<std::string> texts;
  std::transform(timeouts.begin(), timeouts.end(), std::back_inserter(texts), &Stringify<int>);
  return Join(texts);
}

struct WrittenProperty {
  CKelSLPConfig::EProperty property;
  std::string (*text)(const Config&);
};

constexpr std::array<WrittenProperty, 20> kWrittenProperties{{
    {CKelSLPConfig::PROP_MULTICASTTTL, [](const Config& c) { return Stringify<int>(c.GetMulticastTTL()); }},
    {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT,
     [](const Config& c) { return Stringify<int>(c.GetUnicastMaximumWait()); }},
    {CKelSLPConfig::PROP_UNICASTTIMEOUTS,
     [](const Config& c) { return TimeoutsText(c.GetUnicastTimeouts()); }},
    {CKelSLPConfig::PROP_MTU, [](const Config& c) { return Stringify<int>(c.GetMTU()); }},
    {CKelSLPConfig::PROP_BROADCASTADDR, [](const Config& c) { return c.GetBroadcastAddr(); }},
    {CKelSLPConfig::PROP_USEDHCP, [](const Config& c) { return BoolToLowerText(c.GetUseDHCP()); }},
    {CKelSLPConfig::PROP_INTERFACES, [](const Config& c) { return Join(c.GetInterfaces()); }},
    {CKelSLPConfig::PROP_ISDA, [](const Config& c) { return BoolToLowerText(c.GetIsDA()); }},
    {CKelSLPConfig::PROP_DAHEARTBEAT, [](const Config& c) { return Stringify<int>(c.GetDAHeartBeat()); }},
    {CKelSLPConfig::PROP_STALEDACHECKPERIOD,
     [](const Config& c) { return Stringify<int>(c.GetStaleDACheckPeriod()); }},
    {CKelSLPConfig::PROP_USESCOPES, [](const Config& c) { return Join(c.GetUseScopes()); }},
    {CKelSLPConfig::PROP_DAADDRESSES, [](const Config& c) { return Join(c.GetDAAddresses()); }},
    {CKelSLPConfig::PROP_WATCHREGISTRATIONPID,
     [](const Config& c) { return BoolToLowerText(c.GetWatchRegistrationPID()); }},
    {CKelSLPConfig::PROP_INDEXSRVTYPE, [](const Config& c) { return BoolToLowerText(c.GetIndexSrvtype()); }},
    {CKelSLPConfig::PROP_INDEXEDATTRIBUTES, [](const Config& c) { return Join(c.GetIndexedAttributes()); }},
    {CKelSLPConfig::PROP_TRACEDATRAFFIC,
     [](const Config& c) { return BoolToLowerText(c.GetTraceDATraffic()); }},
    {CKelSLPConfig::PROP_TRACEREG, [](const Config& c) { return BoolToLowerText(c.GetTraceReg()); }},
    {CKelSLPConfig::PROP_TRACEDROP, [](const Config& c) { return BoolToLowerText(c.GetTraceDrop()); }},
    {CKelSLPConfig::PROP_TRACEMSG, [](const Config& c) { return BoolToLowerText(c.GetTraceMsg()); }},
    {CKelSLPConfig::PROP_APPENDLOG, [](const Config& c) { return BoolToLowerText(c.GetAppendLog()); }},
}};

}  // namespace

SResult ReadNumericProperty(int& value, CKelSLPConfig::EProperty property, const CSLPConfAccess& store) {
  return ReadParsed(value, property, store, "kelsd::CKelSLPServiceImpl::ReadNumericProperty",
                    &CKelSLPImpl::ParseNumericProperty);
}

SResult ReadTimeoutList(std::vector<int>& value, CKelSLPConfig::EProperty property,
                        const CSLPConfAccess& store) {
  return ReadParsed(value, property, store, "kelsd::CKelSLPServiceImpl::ReadTimeoutList",
                    &CKelSLPImpl::ParseTimeoutsList);
}

SResult ReadStringProperty(std::string& value, CKelSLPConfig::EProperty property,
                           const CSLPConfAccess& store) {
  value = TextOf(property, store).value_or(value);
  return {SResult::ERR_SUCCESS};
}

SResult ReadBoolProperty(bool& value, CKelSLPConfig::EProperty property, const CSLPConfAccess& store) {
  if (const std::optional<std::string> text = TextOf(property, store)) {
    value = IsTrueFlag(*text);
  }
  return {SResult::ERR_SUCCESS};
}

SResult ReadStringListProperty(std::vector<std::string>& value, CKelSLPConfig::EProperty property,
                               const CSLPConfAccess& store) {
  if (const std::optional<std::string> text = TextOf(property, store)) {
    value = SplitList(*text);
  }
  return {SResult::ERR_SUCCESS};
}

void SetServiceConfigValues(CSLPConfAccess& store, const CKelSLPServiceConfig& config) {
  for (const WrittenProperty& row : kWrittenProperties) {
    store.SetValue(CKelSLPConfig::ToStringKey(row.property), row.text(config));
  }
}

}  // namespace kelsd
