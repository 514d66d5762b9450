#include "service_settings.h"

#include <cctype>
#include <charconv>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

using Problem = std::optional<std::string>;
using Setter = std::function<Problem(CKelSLPServiceConfig&, const std::string&)>;

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

Problem Read(int& value, const std::string& text) {
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stopped == end ? Problem() : Problem("'" + text + "' is no whole number");
}

Problem Read(bool& value, const std::string& text) {
  value = text == "true";
  return value || text == "false" ? Problem() : Problem("'" + text + "' is neither true nor false");
}

Problem Read(std::string& value, const std::string& text) {
  value = text;
  return {};
}

Problem Read(std::vector<int>& values, const std::string& text) {
  for (const std::string& part : Split(text)) {
    if (Problem problem = Read(values.emplace_back(), part)) {
      return problem;
    }
  }
  return {};
}

Problem Read(std::vector<std::string>& values, const std::string& text) {
  values = text.empty() ? std::vector<std::string>() : Split(text);
  return {};
}

template <typename Config, typename Value>
Setter Checked(SResult (Config::*set)(const Value&)) {
  return [set](CKelSLPServiceConfig& config, const std::string& text) {
    Value value{};
    if (Problem problem = Read(value, text)) {
      return problem;
    }
    const SResult result = (config.*set)(value);
    return result.IsOk() ? Problem() : Problem(result.GetErrorDetail());
  };
}

template <typename Config, typename Value>
Setter Unchecked(void (Config::*set)(const Value&)) {
  return [set](CKelSLPServiceConfig& config, const std::string& text) {
    Value value{};
    if (Problem problem = Read(value, text)) {
      return problem;
    }
    (config.*set)(value);
    return Problem();
  };
}

const std::map<CKelSLPConfig::EProperty, Setter>& Setters() {
  using Config = CKelSLPServiceConfig;
  static const std::map<CKelSLPConfig::EProperty, Setter> setters = {
      {Config::PROP_MULTICASTTTL, Checked(&Config::SetMulticastTTL)},
      {Config::PROP_UNICASTMAXIMUMWAIT, Checked(&Config::SetUnicastMaximumWait)},
      {Config::PROP_UNICASTTIMEOUTS, Checked(&Config::SetUnicastTimeouts)},
      {Config::PROP_MTU, Checked(&Config::SetMTU)},
      {Config::PROP_BROADCASTADDR, Unchecked(&Config::SetBroadcastAddr)},
      {Config::PROP_USEDHCP, Unchecked(&Config::SetUseDHCP)},
      {Config::PROP_INTERFACES, Unchecked(&Config::SetInterfaces)},
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
  };
  return setters;
}

}  // namespace

CKelSLPConfig::EProperty FindProperty(const std::string& key) {
  const CKelSLPConfig::EProperty property = CKelSLPConfig::StringKeyToEProperty(key, nullptr);
  return property == CKelSLPConfig::PROP_UNKNOWN
             ? CKelSLPConfig::StringKeyToEProperty("net.slp." + key, nullptr)
             : property;
}

bool IsEditable(CKelSLPConfig::EProperty property) {
  return Setters().count(property) != 0;
}

Problem SetSetting(CKelSLPServiceConfig& config, CKelSLPConfig::EProperty property, const std::string& text) {
  return Setters().at(property)(config, text);
}

// A value that is no number is told with the name of the setting; one that is out of range with the function
// that refused it, which is named after the setting.
bool IsAbout(const SResult& problem, CKelSLPConfig::EProperty property) {
  if (problem.GetErrorDetail().rfind("Property: " + CKelSLPConfig::ToString(property) + ". ", 0) == 0) {
    return true;
  }
  const std::string key = CKelSLPConfig::ToStringKey(property);
  std::string name = key.substr(key.rfind('.') + 1);
  name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
  const std::string trail = problem.GetErrorDebug() + " ";
  return trail.find("::Set" + name + " ") != std::string::npos ||
         trail.find("::Validate" + name + " ") != std::string::npos;
}

}  // namespace kelsd_tool
