#include "settings.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "suggestion.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

using Refusal = std::optional<std::string>;
template <typename Config>
using Setter = std::function<Refusal(Config&, const std::string&)>;
template <typename Config>
using Setters = std::map<CKelSLPConfig::EProperty, Setter<Config>>;

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', begin)) {
    parts.push_back(text.substr(begin, comma - begin));
    begin = comma + 1;
  }
  parts.push_back(text.substr(begin));
  return parts;
}

// One reader for each kind of value.

Refusal Read(int& value, const std::string& text) {
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stopped == end ? Refusal() : Refusal("'" + text + "' is no whole number");
}

Refusal Read(bool& value, const std::string& text) {
  value = text == "true";
  return value || text == "false" ? Refusal() : Refusal("'" + text + "' is neither true nor false");
}

Refusal Read(std::string& value, const std::string& text) {
  value = text;
  return {};
}

Refusal Read(std::vector<int>& values, const std::string& text) {
  for (const std::string& part : Split(text)) {
    if (Refusal refusal = Read(values.emplace_back(), part)) {
      return refusal;
    }
  }
  return {};
}

Refusal Read(std::vector<std::string>& values, const std::string& text) {
  values = text.empty() ? std::vector<std::string>() : Split(text);
  return {};
}

template <typename Config, typename Value>
Setter<Config> Checked(SResult (Config::*set)(const Value&)) {
  return [set](Config& config, const std::string& text) {
    Value value{};
    if (Refusal refusal = Read(value, text)) {
      return refusal;
    }
    const SResult result = (config.*set)(value);
    return result.IsOk() ? Refusal() : Refusal(result.GetErrorDetail());
  };
}

template <typename Config, typename Value>
Setter<Config> Unchecked(void (Config::*set)(const Value&)) {
  return [set](Config& config, const std::string& text) {
    Value value{};
    if (Refusal refusal = Read(value, text)) {
      return refusal;
    }
    (config.*set)(value);
    return Refusal();
  };
}

// Those of `Config` itself, and those that both configurations share.
template <typename Config>
Setters<Config> WithCommonSetters(Setters<Config> setters) {
  using Common = CKelSLPConfig;
  const Setters<Common> common = {
      {Common::PROP_MULTICASTTTL, Checked(&Common::SetMulticastTTL)},
      {Common::PROP_UNICASTMAXIMUMWAIT, Checked(&Common::SetUnicastMaximumWait)},
      {Common::PROP_UNICASTTIMEOUTS, Checked(&Common::SetUnicastTimeouts)},
      {Common::PROP_MTU, Checked(&Common::SetMTU)},
      {Common::PROP_BROADCASTADDR, Unchecked(&Common::SetBroadcastAddr)},
      {Common::PROP_USEDHCP, Unchecked(&Common::SetUseDHCP)},
      {Common::PROP_INTERFACES, Unchecked(&Common::SetInterfaces)},
  };
  setters.insert(common.begin(), common.end());
  return setters;
}

const Setters<CKelSLPServiceConfig>& SettersOf(const CKelSLPServiceConfig& /*config*/) {
  using Config = CKelSLPServiceConfig;
  static const Setters<Config> setters = WithCommonSetters<Config>({
      {Config::PROP_ISDA, Unchecked(&Config::SetIsDA)},
      {Config::PROP_DAHEARTBEAT, Checked(&Config::SetDAHeartBeat)},
      {Config::PROP_STALEDACHECKPERIOD, Checked(&Config::SetStaleDACheckPeriod)},
      {Config::PROP_USESCOPES, Unchecked(&Config::SetUseScopes)},
      {Config::PROP_DAADDRESSES, Unchecked(&Config::SetDAAddresses)},
      {Config::PROP_WATCHREGISTRATIONPID, Unchecked(&Config::SetWatchRegistrationPID)},
      {Config::PROP_INDEXSRVTYPE, Unchecked(&Config::SetIndexSrvtype)},
      {Config::PROP_INDEXEDATTRIBUTES, Unchecked(&Config::SetIndexedAttributes)},
      {Config::PROP_TRACEDATRAFFIC, Unchecked(&Config::SetTraceDATraffic)},
      {Config::PROP_TRACEREG, Unchecked(&Config::SetTraceReg)},
      {Config::PROP_TRACEDROP, Unchecked(&Config::SetTraceDrop)},
      {Config::PROP_TRACEMSG, Unchecked(&Config::SetTraceMsg)},
      {Config::PROP_APPENDLOG, Unchecked(&Config::SetAppendLog)},
  });
  return setters;
}

const Setters<CKelSLPClientConfig>& SettersOf(const CKelSLPClientConfig& /*config*/) {
  using Config = CKelSLPClientConfig;
  static const Setters<Config> setters = WithCommonSetters<Config>({
      {Config::PROP_MAXRESULTS, Checked(&Config::SetMaxResults)},
      {Config::PROP_DADISCOVERYMAXIMUMWAIT, Checked(&Config::SetDADiscoveryMaximumWait)},
      {Config::PROP_DADISCOVERYTIMEOUTS, Checked(&Config::SetDADiscoveryTimeouts)},
      {Config::PROP_MULTICASTMAXIMUMWAIT, Checked(&Config::SetMulticastMaximumWait)},
      {Config::PROP_MULTICASTTIMEOUTS, Checked(&Config::SetMulticastTimeouts)},
  });
  return setters;
}

// 1. Make the assignments in the order given; those refused stay for another round.
// 2. As long as a round made any, the others may have become valid by it: once more.
// 3. What the last round refused is wrong.
template <typename Config>
Refusal AssignAll(Config& config, const std::vector<Assignment>& assignments) {
  std::vector<Assignment> pending = assignments;
  Refusal refusal;
  for (std::size_t before = pending.size() + 1; !pending.empty() && pending.size() < before;) {
    before = pending.size();
    refusal.reset();
    std::vector<Assignment> refused;
    for (const Assignment& assignment : pending) {
      const Refusal reason = SettersOf(config).at(assignment.property)(config, assignment.value);
      if (reason) {
        refused.push_back(assignment);
        refusal = refusal ? refusal : "'" + assignment.key + "' cannot be set: " + *reason;
      }
    }
    pending = std::move(refused);
  }
  return refusal;
}

constexpr const char* kKeyPrefix = "net.slp.";

// Each wait and its timeouts are checked against each other.
constexpr std::pair<CKelSLPConfig::EProperty, CKelSLPConfig::EProperty> kValidTogether[] = {
    {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT, CKelSLPConfig::PROP_UNICASTTIMEOUTS},
    {CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT, CKelSLPConfig::PROP_MULTICASTTIMEOUTS},
    {CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT, CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS},
};

// Whether the value of the property was refused by a function that is named after it.
bool IsRefused(CKelSLPConfig::EProperty property, const SResult& problem) {
  const std::string key = CKelSLPConfig::ToStringKey(property);
  std::string name = key.substr(key.rfind('.') + 1);
  name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
  const std::string trail = problem.GetErrorDebug() + " ";
  return trail.find("::Set" + name + " ") != std::string::npos ||
         trail.find("::Validate" + name + " ") != std::string::npos;
}

}  // namespace

CKelSLPConfig::EProperty FindProperty(const std::string& key) {
  const CKelSLPConfig::EProperty property = CKelSLPConfig::StringKeyToEProperty(key, nullptr);
  return property == CKelSLPConfig::PROP_UNKNOWN
             ? CKelSLPConfig::StringKeyToEProperty(kKeyPrefix + key, nullptr)
             : property;
}

std::string UnknownKey(const std::string& key) {
  const bool whole = key.rfind(kKeyPrefix, 0) == 0;
  std::vector<std::string> keys;
  for (const CKelSLPConfig::EProperty property : CKelSLPConfig::GetEProperty()) {
    const std::string name = CKelSLPConfig::ToStringKey(property);
    keys.push_back(whole || name.rfind(kKeyPrefix, 0) != 0 ? name
                                                           : name.substr(std::string(kKeyPrefix).size()));
  }
  const std::optional<std::string> meant = ClosestWord(key, keys);
  return "there is no setting '" + key + "'; " + (meant ? "did you mean '" + *meant + "'? " : "") +
         "'kelsd config show' lists them";
}

bool IsServiceEditable(CKelSLPConfig::EProperty property) {
  return SettersOf(CKelSLPServiceConfig()).count(property) != 0;
}

bool IsClientEditable(CKelSLPConfig::EProperty property) {
  return SettersOf(CKelSLPClientConfig()).count(property) != 0;
}

Refusal ParseAssignment(const std::string& text, Assignment& assignment) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    return "settings are given as KEY=VALUE, not '" + text + "'";
  }
  assignment.key = text.substr(0, equals);
  assignment.property = FindProperty(assignment.key);
  assignment.value = text.substr(equals + 1);
  return assignment.property == CKelSLPConfig::PROP_UNKNOWN ? UnknownKey(assignment.key) : Refusal();
}

Refusal Assign(CKelSLPServiceConfig& config, const std::vector<Assignment>& assignments) {
  return AssignAll(config, assignments);
}

Refusal Assign(CKelSLPClientConfig& config, const std::vector<Assignment>& assignments) {
  return AssignAll(config, assignments);
}

// A value that is no number is told with the name of the setting; one that is out of range with the function
// that refused it, which is named after the setting.
bool IsAbout(const SResult& problem, CKelSLPConfig::EProperty property) {
  if (problem.GetErrorDetail().rfind("Property: " + CKelSLPConfig::ToString(property) + ". ", 0) == 0) {
    return true;
  }
  const auto pair = std::find_if(
      std::begin(kValidTogether), std::end(kValidTogether),
      [property](const auto& together) { return together.first == property || together.second == property; });
  return pair == std::end(kValidTogether)
             ? IsRefused(property, problem)
             : IsRefused(pair->first, problem) || IsRefused(pair->second, problem);
}

}  // namespace kelsd_tool
