// kelsd config: the settings of the daemon, and those that searches use.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "attribute_view.h"
#include "commands/commands.h"
#include "config_view.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "search_session.h"
#include "service_settings.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

struct ConfigOptions {
  SearchSession session;
  bool client = false;
  std::string key;
  std::vector<std::string> assignments;
};

// What a configuration record of either kind says.
struct Configuration {
  std::vector<Setting> settings;
  std::map<CKelSLPConfig::EProperty, std::string> deviations;
  std::vector<SResult> problems;
};

constexpr const char* kExamples = R"help(Examples:
  kelsd config show
  kelsd config show --client --timeout 5000 --json
  kelsd config get net.slp.useScopes
  kelsd config set useScopes=DEFAULT,TAMRO traceReg=true
  kelsd config validate
  kelsd config path

A '*' marks a value that differs from the default of the SLP standard. Keys may leave out "net.slp.".
Exit status: 0 done; 1 deviations found (validate only); 2 usage; 3 failure.)help";

std::optional<ExitStatus> Read(ConfigOptions& options, Console& console, Configuration& configuration) {
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return status;
  }
  SResult read;
  if (options.client) {
    CKelSLPClientConfig config;
    read = kelsd::CKelSLPClient::GetSLPClientConfig(config, configuration.problems);
    configuration.settings = ClientSettings(config);
    configuration.deviations = config.Validate();
  } else {
    CKelSLPServiceConfig config;
    read = kelsd::CKelSLPService::GetSLPServiceConfig(config, configuration.problems);
    configuration.settings = ServiceSettings(config);
    configuration.deviations = config.Validate();
  }
  if (read.IsNotOk()) {
    return console.Fail(read);
  }
  for (const SResult& problem : configuration.problems) {
    console.PrintError(problem);
  }
  return std::nullopt;
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

ExitStatus Show(ConfigOptions& options, Console& console) {
  Configuration configuration;
  if (const std::optional<ExitStatus> status = Read(options, console, configuration)) {
    return *status;
  }
  if (options.session.json()) {
    nlohmann::json list = nlohmann::json::array();
    for (const Setting& setting : configuration.settings) {
      list.push_back(ToJson(setting));
    }
    console.PrintJson({{"settings", list}});
    return kFound;
  }
  Table table({{""}, {"PROPERTY"}, {"VALUE"}, {"MEANING", false, true}});
  for (const Setting& setting : configuration.settings) {
    table.AddRow({setting.is_standard ? "" : "*", CKelSLPConfig::ToStringKey(setting.property),
                  ToText(setting.value), CKelSLPConfig::ToString(setting.property)});
  }
  console.PrintTable(table);
  return kFound;
}

ExitStatus Get(ConfigOptions& options, Console& console) {
  const CKelSLPConfig::EProperty property = FindProperty(options.key);
  if (property == CKelSLPConfig::PROP_UNKNOWN) {
    return console.RejectUsage("there is no setting '" + options.key + "'; 'kelsd config show' lists them");
  }
  Configuration configuration;
  if (const std::optional<ExitStatus> status = Read(options, console, configuration)) {
    return *status;
  }
  for (const Setting& setting : configuration.settings) {
    if (setting.property == property) {
      if (options.session.json()) {
        console.PrintJson(ToJson(setting));
      } else {
        console.PrintLine(ToText(setting.value));
      }
      return kFound;
    }
  }
  return console.RejectUsage("'" + options.key + "' is no setting of the " +
                             (options.client ? "client" : "service") + " configuration");
}

struct Assignment {
  std::string key;
  CKelSLPConfig::EProperty property = CKelSLPConfig::PROP_UNKNOWN;
  std::string value;
};

// What is wrong with `text`, none when it has become `assignment`.
std::optional<std::string> ParseAssignment(const std::string& text, Assignment& assignment) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) {
    return "settings are given as KEY=VALUE, not '" + text + "'";
  }
  assignment.key = text.substr(0, equals);
  assignment.property = FindProperty(assignment.key);
  assignment.value = text.substr(equals + 1);
  if (assignment.property == CKelSLPConfig::PROP_UNKNOWN) {
    return "there is no setting '" + assignment.key + "'; 'kelsd config show' lists them";
  }
  if (!IsEditable(assignment.property)) {
    return "'" + assignment.key +
           "' is read-only here; it is changed in the configuration file that 'kelsd config path' names";
  }
  return std::nullopt;
}

// Whether a value of the file, which could not be read, would be replaced by the default without having been
// asked for; it has been told then.
bool WouldLoseValues(const std::vector<SResult>& problems, const std::vector<Assignment>& assignments,
                     Console& console) {
  bool would_lose = false;
  for (const SResult& problem : problems) {
    if (std::none_of(assignments.begin(), assignments.end(), [&problem](const Assignment& assignment) {
          return IsAbout(problem, assignment.property);
        })) {
      console.PrintError(problem);
      would_lose = true;
    }
  }
  if (would_lose) {
    console.PrintError(
        "nothing was set, as it would replace the values above by defaults: correct them in the "
        "configuration "
        "file, or set them too");
  }
  return would_lose;
}

// 1. All assignments must make sense before anything is written,
// 2. and every value of the file that they leave alone must have been read, as all are written.
// 3. Write them together: the daemon is restarted once at most.
ExitStatus Set(ConfigOptions& options, Console& console) {
  if (options.client) {
    return console.RejectUsage(
        "the client configuration lives in the process that sets it and is not stored: an application sets "
        "its own; 'kelsd find' takes --timeout and --interface");
  }
  std::vector<Assignment> assignments(options.assignments.size());
  for (std::size_t i = 0; i < assignments.size(); ++i) {
    if (const auto problem = ParseAssignment(options.assignments[i], assignments[i])) {
      return console.RejectUsage(*problem);
    }
  }
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }
  CKelSLPServiceConfig config;
  std::vector<SResult> problems;
  if (const SResult read = kelsd::CKelSLPService::GetSLPServiceConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  for (const Assignment& assignment : assignments) {
    if (const auto problem = SetSetting(config, assignment.property, assignment.value)) {
      return console.RejectUsage("'" + assignment.key + "' cannot be set: " + *problem);
    }
  }
  if (WouldLoseValues(problems, assignments, console)) {
    return kFailure;
  }
  if (const SResult set = kelsd::CKelSLPService::SetSLPServiceConfig(config); set.IsNotOk()) {
    return console.Fail(set);
  }
  if (options.session.json()) {
    console.PrintJson({{"set", options.assignments}});
  } else {
    console.PrintLine("Set.");
  }
  return kFound;
}

ExitStatus Validate(ConfigOptions& options, Console& console) {
  Configuration configuration;
  if (const std::optional<ExitStatus> status = Read(options, console, configuration)) {
    return *status;
  }
  nlohmann::json list = nlohmann::json::array();
  for (const auto& [property, text] : configuration.deviations) {
    list.push_back({{"property", CKelSLPConfig::ToStringKey(property)}, {"text", text}});
    if (!options.session.json()) {
      console.PrintLine(CKelSLPConfig::ToStringKey(property) + ": " + text);
    }
  }
  if (options.session.json()) {
    console.PrintJson({{"deviations", list}});
  }
  return list.empty() && configuration.problems.empty() ? kFound : kNothingFound;
}

ExitStatus Path(ConfigOptions& options, Console& console) {
  options.session.UseConfiguration();
  const char* path = std::getenv("OpenSLPConfig");
  if (path == nullptr) {
    return console.Fail(SResult(SResult::ERR_ENV_NOT_SET));
  }
  if (options.session.json()) {
    std::error_code ignored;
    console.PrintJson({{"path", path}, {"exists", std::filesystem::exists(path, ignored)}});
  } else {
    console.PrintLine(path);
  }
  return kFound;
}

struct SubVerb {
  const char* name;
  const char* help;
  ExitStatus (*perform)(ConfigOptions&, Console&);
};

constexpr SubVerb kSubVerbs[] = {
    {"show", "Show the settings in force", &Show},
    {"get", "Print the value of one setting", &Get},
    {"set", "Change settings of the daemon; it is restarted when that makes a difference", &Set},
    {"validate", "Print what deviates from the library's requirements, one line each", &Validate},
    {"path", "Print the name of the configuration file", &Path},
};

}  // namespace

void AddConfig(CLI::App& app, Console& console, ExitStatus& status) {
  CLI::App* verb = app.add_subcommand("config", "Show, check and change the settings");
  verb->require_subcommand(1);
  verb->footer(kExamples);

  auto options = std::make_shared<ConfigOptions>();
  for (const SubVerb& sub_verb : kSubVerbs) {
    CLI::App* sub = verb->add_subcommand(sub_verb.name, sub_verb.help);
    if (sub_verb.perform == &Get) {
      sub->add_option("KEY", options->key, "setting, e.g. net.slp.useScopes")->required();
    }
    if (sub_verb.perform == &Set) {
      sub->add_option("SETTING", options->assignments,
                      "setting and its value; several values are separated by commas")
          ->type_name("KEY=VALUE")
          ->required();
    }
    sub->add_flag("--client", options->client, "the settings that searches use, instead of the daemon's");
    if (sub_verb.perform == &Set || sub_verb.perform == &Path) {
      options->session.AddCommonOptions(*sub);
    } else {
      options->session.AddSearchOptions(*sub);
    }
    sub->footer(kExamples);
    sub->callback([options, &sub_verb, &console, &status] { status = sub_verb.perform(*options, console); });
  }
}

}  // namespace kelsd_tool
