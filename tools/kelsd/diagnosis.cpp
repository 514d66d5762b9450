#include "diagnosis.h"

#include <algorithm>

#include "attribute_view.h"
#include "hints.h"
#include "printable_text.h"
#include "settings.h"

namespace kelsd_tool {

using kelsd::CKelSLPConfig;
using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

namespace {

constexpr const char* kUnicast = "slpd answers by unicast";
constexpr const char* kMulticast = "slpd answers by multicast";

constexpr const char* kUnicastAdvice =
    "Check that the daemon was started with this configuration file (kelsd slpd restart), and that no "
    "firewall closes the port.";
constexpr const char* kMulticastAdvice =
    "Check that the network interface allows multicast to 239.255.255.253, that no firewall drops it, and "
    "the addresses in net.slp.interfaces.";
constexpr const char* kOthersAdvice =
    "The slpd of this host is not found by the others. Check that its firewall lets the daemon's port in by "
    "UDP, and the addresses in net.slp.interfaces, then: kelsd slpd restart";

bool IsOwn(const SKelServiceSearchResult& agent, const std::vector<std::string>& own_addresses) {
  return agent.Host.rfind("127.", 0) == 0 ||
         std::find(own_addresses.begin(), own_addresses.end(), agent.Host) != own_addresses.end();
}

std::string JoinUrls(const std::vector<SKelServiceSearchResult>& agents) {
  std::string urls;
  for (const SKelServiceSearchResult& agent : agents) {
    urls += (urls.empty() ? "" : ", ") + agent.URL;
  }
  return urls;
}

// The value that the library wants a setting to have. Of those that can be changed it asks something of flags
// alone.
std::string RequiredValue(const std::string& key, CKelSLPConfig::EProperty property) {
  for (const char* value : {"true", "false"}) {
    kelsd::CKelSLPServiceConfig config;
    if (!Assign(config, {{key, property, value}}) && config.Validate().count(property) == 0) {
      return value;
    }
  }
  return "VALUE";
}

std::string AdviceFor(CKelSLPConfig::EProperty property) {
  const std::string key = CKelSLPConfig::ToStringKey(property);
  if (IsServiceEditable(property)) {
    return "Change it: kelsd config set " + key + "=" + RequiredValue(key, property);
  }
  if (property == CKelSLPConfig::PROP_OPENSLPVERSION) {
    return "Install the SLP version that the library was made for.";
  }
  return "Correct " + key + " in the configuration file, then: kelsd slpd restart";
}

}  // namespace

Finding Problem(const std::string& check, const SResult& result) {
  return {check, false, OneLine(result.ToString()), HintFor(result.GetErrorCode())};
}

Findings JudgeSettings(const std::vector<SResult>& unread,
                       const std::map<CKelSLPConfig::EProperty, std::string>& deviations) {
  Findings findings;
  for (const SResult& problem : unread) {
    findings.push_back(
        {"properties readable", false, OneLine(problem.ToString()), HintFor(SResult::ERR_PROPERTY_PARSE)});
  }
  if (unread.empty()) {
    findings.push_back({"properties readable", true, "", ""});
  }
  for (const auto& [property, text] : deviations) {
    findings.push_back({"settings as required", false, text, AdviceFor(property)});
  }
  if (deviations.empty()) {
    findings.push_back({"settings as required", true, "", ""});
  }
  return findings;
}

Finding JudgeRunning(const SResult& asked, bool running) {
  if (asked.IsNotOk()) {
    return Problem("slpd running", asked);
  }
  if (!running) {
    return {"slpd running", false, "slpd does not run on this host.", "Start it: kelsd slpd start"};
  }
  return {"slpd running", true, "", ""};
}

Finding JudgeUnicast(const SResult& found, const std::vector<SKelServiceSearchResult>& agents) {
  if (found.IsNotOk()) {
    return {kUnicast, false, OneLine(found.ToString()), kUnicastAdvice};
  }
  if (agents.empty()) {
    return {kUnicast, false, "Nobody answered.", kUnicastAdvice};
  }
  return {kUnicast, true, JoinUrls(agents), ""};
}

Finding JudgeMulticast(const SResult& found, const std::vector<SKelServiceSearchResult>& agents,
                       const std::vector<std::string>& own_addresses) {
  if (found.IsNotOk()) {
    return {kMulticast, false, OneLine(found.ToString()), kMulticastAdvice};
  }
  if (agents.empty()) {
    return {kMulticast, false, "Nobody answered.", kMulticastAdvice};
  }
  std::vector<SKelServiceSearchResult> own;
  std::vector<SKelServiceSearchResult> others;
  for (const SKelServiceSearchResult& agent : agents) {
    (IsOwn(agent, own_addresses) ? own : others).push_back(agent);
  }
  if (own.empty()) {
    return {kMulticast, false, "Only other hosts answered: " + JoinUrls(others) + ".", kOthersAdvice};
  }
  return {kMulticast, true, JoinUrls(own) + (others.empty() ? "" : "; other hosts too: " + JoinUrls(others)),
          ""};
}

nlohmann::json ToJson(const Findings& findings) {
  nlohmann::json list = nlohmann::json::array();
  for (const Finding& finding : findings) {
    list.push_back({{"check", finding.check},
                    {"ok", finding.ok},
                    {"detail", finding.detail},
                    {"advice", finding.advice}});
  }
  return list;
}

std::vector<std::string> ToLines(const Findings& findings) {
  std::vector<std::string> lines;
  for (const Finding& finding : findings) {
    lines.push_back((finding.ok ? "ok       " : "problem  ") + finding.check +
                    (finding.detail.empty() ? "" : ": " + finding.detail));
    if (!finding.advice.empty()) {
      lines.push_back("         advice: " + finding.advice);
    }
  }
  return lines;
}

}  // namespace kelsd_tool
