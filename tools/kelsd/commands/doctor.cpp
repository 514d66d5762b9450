// kelsd doctor: what is wrong with service discovery on this host, and what to do about it.
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "commands/commands.h"
#include "hints.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "printable_text.h"
#include "progress.h"
#include "search_session.h"
#include "service_settings.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPService;
using kelsd::CKelSLPServiceConfig;
using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

struct Finding {
  std::string check;
  bool ok = true;
  std::string detail;
  std::string advice;
};

using Findings = std::vector<Finding>;

// Every service agent answers a search for this type, whatever is registered with it.
constexpr const char* kAgentType = "service:service-agent";
constexpr const char* kLoopback = "127.0.0.1";

constexpr const char* kExamples = R"help(Examples:
  kelsd doctor
  kelsd doctor --config /etc/slp.conf --timeout 5000
  kelsd doctor --json

Changes nothing. What depends on something that is missing is left out.
Exit status: 0 all well; 1 problems found; 2 usage; 3 the library could not be used at all.)help";

Finding Problem(const std::string& check, const SResult& result) {
  return {check, false, result.ToString(), HintFor(result.GetErrorCode())};
}

// Whether there is a file that the library can use.
bool CheckFile(Findings& findings) {
  const char* path = std::getenv("OpenSLPConfig");
  if (path == nullptr) {
    findings.push_back({"configuration file named", false, "The variable OpenSLPConfig is not set.",
                        HintFor(SResult::ERR_ENV_NOT_SET)});
    return false;
  }
  findings.push_back({"configuration file named", true, path, ""});
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) {
    findings.push_back({"configuration file found", false, std::string(path) + " is no file.",
                        "The first registration creates it, and so does 'kelsd config show'; or correct "
                        "the variable OpenSLPConfig."});
    return false;
  }
  findings.push_back({"configuration file found", true, path, ""});
  return true;
}

void Judge(const std::vector<SResult>& unread,
           const std::map<CKelSLPConfig::EProperty, std::string>& deviations, Findings& findings) {
  for (const SResult& problem : unread) {
    findings.push_back(
        {"properties readable", false, problem.ToString(), HintFor(SResult::ERR_PROPERTY_PARSE)});
  }
  if (unread.empty()) {
    findings.push_back({"properties readable", true, "", ""});
  }
  for (const auto& [property, text] : deviations) {
    const std::string key = CKelSLPConfig::ToStringKey(property);
    std::string advice = "Correct " + key + " in the configuration file, then: kelsd slpd restart";
    if (IsEditable(property)) {
      advice = "Change it: kelsd config set " + key + "=VALUE";
    } else if (property == CKelSLPConfig::PROP_OPENSLPVERSION) {
      advice = "Install the SLP version that the library was made for.";
    }
    findings.push_back({"settings as required", false, text, advice});
  }
  if (deviations.empty()) {
    findings.push_back({"settings as required", true, "", ""});
  }
}

void CheckSettings(Findings& findings) {
  CKelSLPServiceConfig config;
  std::vector<SResult> unread;
  if (const SResult read = CKelSLPService::GetSLPServiceConfig(config, unread); read.IsNotOk()) {
    findings.push_back(Problem("configuration file used", read));
    return;
  }
  findings.push_back({"configuration file used", true, "", ""});
  Judge(unread, config.Validate(), findings);
}

// The daemon's settings are those of a file, and reading them would create one.
void CheckSearchSettings(Findings& findings) {
  CKelSLPClientConfig config;
  std::vector<SResult> unread;
  if (const SResult read = kelsd::CKelSLPClient::GetSLPClientConfig(config, unread); read.IsNotOk()) {
    findings.push_back(Problem("properties readable", read));
    return;
  }
  Judge(unread, config.Validate(), findings);
}
bool CheckRunning(Findings& findings) {
  bool running = false;
  if (const SResult asked = CKelSLPService::IsSLPDRunning(running); asked.IsNotOk()) {
    findings.push_back(Problem("slpd running", asked));
    return false;
  }
  findings.push_back({"slpd running", running, running ? "" : "slpd does not run on this host.",
                      running ? "" : "Start it: kelsd slpd start"});
  return running;
}

void CheckAnswer(const std::string& check, const std::string& address, const std::string& advice,
                 Findings& findings) {
  std::vector<SKelServiceSearchResult> agents;
  const SResult found = kelsd::CKelSLPClient::FindServices(agents, kAgentType, {}, "", address);
  if (found.IsNotOk()) {
    findings.push_back({check, false, found.ToString(), advice});
  } else if (agents.empty()) {
    findings.push_back({check, false, "Nobody answered.", advice});
  } else {
    std::string urls;
    for (const SKelServiceSearchResult& agent : agents) {
      urls += (urls.empty() ? "" : ", ") + PrintableText(agent.URL);
    }
    findings.push_back({check, true, urls, ""});
  }
}

void Print(Console& console, const Findings& findings, bool json) {
  if (json) {
    nlohmann::json list = nlohmann::json::array();
    for (const Finding& finding : findings) {
      list.push_back({{"check", finding.check},
                      {"ok", finding.ok},
                      {"detail", finding.detail},
                      {"advice", finding.advice}});
    }
    console.PrintJson({{"findings", list}});
    return;
  }
  for (const Finding& finding : findings) {
    console.PrintLine((finding.ok ? "ok       " : "problem  ") + finding.check +
                      (finding.detail.empty() ? "" : ": " + finding.detail));
    if (!finding.advice.empty()) {
      console.PrintLine("         advice: " + finding.advice);
    }
  }
}

// 1. The library must work at all.
// 2. The configuration file, and what it says; without one, what searches use.
// 3. The daemon, and whether it answers; one that does not run need not be asked.
ExitStatus Diagnose(SearchSession& session, Console& console) {
  if (const SResult initialised = session.Initialize(); initialised.IsNotOk()) {
    Print(console, {Problem("library initialised", initialised)}, session.json());
    return kFailure;
  }
  if (const std::optional<ExitStatus> status = session.ApplyClientConfig(console)) {
    return *status;
  }
  Findings findings = {{"library initialised", true, "", ""}};
  if (CheckFile(findings)) {
    CheckSettings(findings);
  } else {
    CheckSearchSettings(findings);
  }
  if (CheckRunning(findings)) {
    const Progress progress("Asking slpd");
    CheckAnswer(
        "slpd answers by unicast", kLoopback,
        "Check that the daemon was started with this configuration file (kelsd slpd restart), and that no "
        "firewall closes the port.",
        findings);
    CheckAnswer("slpd answers by multicast", "",
                "Check that the network interface allows multicast to 239.255.255.253, that no firewall "
                "drops it, and the addresses in net.slp.interfaces.",
                findings);
  }
  Print(console, findings, session.json());
  for (const Finding& finding : findings) {
    if (!finding.ok) {
      return kNothingFound;
    }
  }
  return kFound;
}

}  // namespace

void AddDoctor(CLI::App& app, Console& console, ExitStatus& status) {
  auto session = std::make_shared<SearchSession>();
  CLI::App* verb = app.add_subcommand("doctor", "Say what is wrong on this host, and what to do about it");
  session->AddSearchOptions(*verb);
  verb->footer(kExamples);
  verb->callback([session, &console, &status] { status = Diagnose(*session, console); });
}

}  // namespace kelsd_tool
