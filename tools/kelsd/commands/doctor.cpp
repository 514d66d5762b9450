// kelsd doctor: what is wrong with service discovery on this host, and what to do about it.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "commands/commands.h"
#include "configuration_file.h"
#include "diagnosis.h"
#include "hints.h"
#include "host_addresses.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "progress.h"
#include "search_session.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClient;
using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPService;
using kelsd::CKelSLPServiceConfig;
using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

// Every service agent answers a search for this type, whatever is registered with it.
constexpr const char* kAgentType = "service:service-agent";
constexpr const char* kLoopback = "127.0.0.1";

constexpr const char* kDoctorExamples = R"help(Examples:
  kelsd doctor
  kelsd doctor --config /etc/slp.conf --timeout 5000
  kelsd doctor --json

Changes nothing. What depends on something that is missing is left out.
Exit status: 0 all well; 1 problems found; 2 usage; 3 the library could not be used at all.)help";

// Whether there is a file that the library can use.
bool CheckFile(Findings& findings) {
  const std::optional<std::string> named = ConfigurationFile();
  if (!named || named->empty()) {
    findings.push_back(
        {"configuration file named", false,
         named ? "The variable OpenSLPConfig is empty." : "The variable OpenSLPConfig is not set.",
         HintFor(SResult::ERR_ENV_NOT_SET)});
    return false;
  }
  const std::string& path = *named;
  findings.push_back({"configuration file named", true, path, ""});
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    findings.push_back({"configuration file found", false, path + " does not exist.",
                        "The first registration creates it, and so does 'kelsd config show'; or correct "
                        "the variable OpenSLPConfig."});
    return false;
  }
  if (!std::filesystem::is_regular_file(path, error)) {
    findings.push_back({"configuration file found", false, path + " is no file.",
                        "Let the variable OpenSLPConfig name a file."});
    return false;
  }
  findings.push_back({"configuration file found", true, path, ""});
  return true;
}

void Add(Findings&& more, Findings& findings) {
  findings.insert(findings.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

void CheckSettings(Findings& findings) {
  CKelSLPServiceConfig config;
  std::vector<SResult> unread;
  if (const SResult read = CKelSLPService::GetSLPServiceConfig(config, unread); read.IsNotOk()) {
    findings.push_back(Problem("configuration file used", read));
    return;
  }
  findings.push_back({"configuration file used", true, "", ""});
  Add(JudgeSettings(unread, config.Validate()), findings);
}

// The daemon's settings are those of a file, and reading them would create one.
void CheckSearchSettings(Findings& findings) {
  CKelSLPClientConfig config;
  std::vector<SResult> unread;
  if (const SResult read = CKelSLPClient::GetSLPClientConfig(config, unread); read.IsNotOk()) {
    findings.push_back(Problem("properties readable", read));
    return;
  }
  Add(JudgeSettings(unread, config.Validate()), findings);
}

// One that does not run need not be asked; one of which the system cannot tell may.
void CheckDaemon(Findings& findings) {
  bool running = false;
  const SResult asked = CKelSLPService::IsSLPDRunning(running);
  findings.push_back(JudgeRunning(asked, running));
  if (asked.IsOk() && !running) {
    return;
  }
  const Progress progress("Asking slpd");
  std::vector<SKelServiceSearchResult> agents;
  SResult found = CKelSLPClient::FindServices(agents, kAgentType, {}, "", kLoopback);
  findings.push_back(JudgeUnicast(found, agents));
  agents.clear();
  found = CKelSLPClient::FindServices(agents, kAgentType, {}, "", "");
  findings.push_back(JudgeMulticast(found, agents, HostAddresses()));
}

ExitStatus Print(Console& console, const Findings& findings, bool json) {
  if (json) {
    console.PrintJson({{"findings", ToJson(findings)}});
  } else {
    for (const std::string& line : ToLines(findings)) {
      console.PrintLine(line);
    }
  }
  const bool well =
      std::all_of(findings.begin(), findings.end(), [](const Finding& finding) { return finding.ok; });
  return well ? kFound : kNothingFound;
}

// 1. The library must work at all.
// 2. The configuration file, and what it says; without one, what searches use.
// 3. The daemon, and whether it answers.
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
  CheckDaemon(findings);
  return Print(console, findings, session.json());
}

}  // namespace

void AddDoctor(CLI::App& app, Console& console, ExitStatus& status) {
  auto session = std::make_shared<SearchSession>();
  CLI::App* verb = app.add_subcommand("doctor", "Say what is wrong on this host, and what to do about it");
  session->AddSearchOptions(*verb);
  verb->footer(kDoctorExamples);
  verb->callback([session, &console, &status] { status = Diagnose(*session, console); });
}

}  // namespace kelsd_tool
