#include "commands/config_set.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "config_view.h"
#include "configuration_file.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "progress.h"
#include "result_view.h"
#include "settings.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClient;
using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPService;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

constexpr const char* kOnlyHere =
    "Applied to this process only, which ends now: a client configuration is written to no file. To make it "
    "permanent, let the application pass it to CKelSLPClient::SetSLPClientConfig each time it starts; "
    "'kelsd find' takes --timeout and --interface.";

// Why the property cannot be set, none when it can.
std::optional<std::string> WhyNot(const Assignment& assignment, bool client) {
  const bool service_can = IsServiceEditable(assignment.property);
  const bool client_can = IsClientEditable(assignment.property);
  if (client ? client_can : service_can) {
    return std::nullopt;
  }
  const std::string key = "'" + assignment.key + "' ";
  if (service_can) {
    return key + "is a setting of the daemon: leave out --client";
  }
  if (client_can) {
    return key + "is a setting of searches: it goes with --client";
  }
  return key + "is read-only here; it is changed in the configuration file that 'kelsd config path' names";
}

// What is wrong with the command line, none when all of it has become `assignments`.
std::optional<std::string> Parse(const ConfigOptions& options, std::vector<Assignment>& assignments) {
  for (const std::string& text : options.assignments) {
    if (auto problem = ParseAssignment(text, assignments.emplace_back())) {
      return problem;
    }
    if (auto reason = WhyNot(assignments.back(), options.client)) {
      return reason;
    }
  }
  return std::nullopt;
}

// Whether the value of a setting that is written but not assigned could not be used.
bool IsAboutOthers(const SResult& problem, const std::vector<Assignment>& assignments) {
  const std::vector<CKelSLPConfig::EProperty> all = CKelSLPConfig::GetEProperty();
  return std::any_of(all.begin(), all.end(), [&](CKelSLPConfig::EProperty property) {
    return IsServiceEditable(property) && IsAbout(problem, property) &&
           std::none_of(assignments.begin(), assignments.end(),
                        [property](const Assignment& assignment) { return assignment.property == property; });
  });
}

// Whether a value of the file, which could not be used, would be replaced by the default without having been
// asked for; it has been told then.
bool WouldLoseValues(const std::vector<SResult>& problems, const std::vector<Assignment>& assignments,
                     Console& console) {
  bool would_lose = false;
  for (const SResult& problem : problems) {
    if (IsAboutOthers(problem, assignments)) {
      console.PrintError(problem);
      would_lose = true;
    }
  }
  if (would_lose) {
    console.PrintError(
        "nothing was set, as it would replace the values above by defaults: correct them in the "
        "configuration file, or set them too");
  }
  return would_lose;
}

// 1. Every value of the file that the assignments leave alone must be usable, as all are written.
// 2. Write them together: the daemon is restarted once at most.
ExitStatus SetOfService(ConfigOptions& options, const std::vector<Assignment>& assignments,
                        Console& console) {
  CKelSLPServiceConfig config;
  std::vector<SResult> problems;
  if (const SResult read = CKelSLPService::GetSLPServiceConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  if (const auto problem = Assign(config, assignments)) {
    return console.RejectUsage(*problem);
  }
  if (WouldLoseValues(problems, assignments, console)) {
    return kFailure;
  }
  SResult set;
  {
    const Progress progress("Writing the settings");
    set = CKelSLPService::SetSLPServiceConfig(config);
  }
  if (set.IsNotOk()) {
    return console.Fail(set);
  }
  const std::string file = ConfigurationFile().value_or("");
  if (options.session.json()) {
    console.PrintJson({{"set", options.assignments}, {"file", file}});
  } else {
    console.PrintLine("Set in " + file + ".");
  }
  return kFound;
}

// 1. Apply them,
// 2. and show what has been applied, as SLP has it.
ExitStatus SetOfClient(ConfigOptions& options, const std::vector<Assignment>& assignments, Console& console) {
  CKelSLPClientConfig config;
  std::vector<SResult> problems;
  if (const SResult read = CKelSLPClient::GetSLPClientConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  if (const auto problem = Assign(config, assignments)) {
    return console.RejectUsage(*problem);
  }
  if (const SResult set = CKelSLPClient::SetSLPClientConfig(config); set.IsNotOk()) {
    return console.Fail(set);
  }
  if (const SResult read = CKelSLPClient::GetSLPClientConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  const std::vector<Setting> settings = ClientSettings(config);
  if (options.session.json()) {
    console.PrintJson({{"set", options.assignments},
                       {"file", nullptr},
                       {"note", kOnlyHere},
                       {"settings", ToJson(settings)},
                       {"problems", ToJson(problems)}});
    return kFound;
  }
  for (const SResult& problem : problems) {
    console.PrintError(problem);
  }
  console.PrintTable(ToTable(settings));
  console.PrintLine(kOnlyHere);
  return kFound;
}

}  // namespace

// All assignments must make sense before anything is done.
ExitStatus SetSettings(ConfigOptions& options, Console& console) {
  std::vector<Assignment> assignments;
  if (const auto problem = Parse(options, assignments)) {
    return console.RejectUsage(*problem);
  }
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }
  return options.client ? SetOfClient(options, assignments, console)
                        : SetOfService(options, assignments, console);
}

}  // namespace kelsd_tool
