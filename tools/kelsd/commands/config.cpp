// kelsd config: the settings of the daemon, and those that searches use.
#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "attribute_view.h"
#include "commands/commands.h"
#include "commands/config_set.h"
#include "config_view.h"
#include "configuration_file.h"
#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "result_view.h"
#include "settings.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::CKelSLPServiceConfig;
using kelsd::SResult;

// What a configuration record of either kind says.
struct Configuration {
  std::vector<Setting> settings;
  std::map<CKelSLPConfig::EProperty, std::string> deviations;
  std::vector<SResult> problems;
};

constexpr const char* kConfigExamples = R"help(Examples:
  kelsd config show
  kelsd config show --client --timeout 5000 --json
  kelsd config get net.slp.useScopes
  kelsd config set useScopes=DEFAULT,TAMRO traceReg=true
  kelsd config set --client maxResults=20 multicastTimeouts=500,1000
  kelsd config validate
  kelsd config path

A '*' marks a value that differs from the default of the SLP standard. Keys may leave out "net.slp.".
'set' writes the settings of slpd to the configuration file and restarts slpd when that makes a difference.
With --client it applies them to the searches of its own process, shows what they are then, and writes nothing
to a file: an application passes its own to CKelSLPClient::SetSLPClientConfig each time it starts.
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
    if (!options.session.json()) {
      console.PrintError(problem);
    }
  }
  return std::nullopt;
}

ExitStatus Show(ConfigOptions& options, Console& console) {
  Configuration configuration;
  if (const std::optional<ExitStatus> status = Read(options, console, configuration)) {
    return *status;
  }
  if (options.session.json()) {
    console.PrintJson(
        {{"settings", ToJson(configuration.settings)}, {"problems", ToJson(configuration.problems)}});
  } else {
    console.PrintTable(ToTable(configuration.settings));
  }
  return kFound;
}

ExitStatus Get(ConfigOptions& options, Console& console) {
  const CKelSLPConfig::EProperty property = FindProperty(options.key);
  if (property == CKelSLPConfig::PROP_UNKNOWN) {
    return console.RejectUsage(UnknownKey(options.key));
  }
  Configuration configuration;
  if (const std::optional<ExitStatus> status = Read(options, console, configuration)) {
    return *status;
  }
  for (const Setting& setting : configuration.settings) {
    if (setting.property == property) {
      if (options.session.json()) {
        nlohmann::json document = ToJson(setting);
        document["problems"] = ToJson(configuration.problems);
        console.PrintJson(document);
      } else {
        console.PrintLine(ToText(setting.value));
      }
      return kFound;
    }
  }
  return console.RejectUsage("'" + options.key + "' is no setting of the " +
                             (options.client ? "client" : "service") + " configuration");
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
    console.PrintJson({{"deviations", list}, {"problems", ToJson(configuration.problems)}});
  }
  return list.empty() && configuration.problems.empty() ? kFound : kNothingFound;
}

ExitStatus Path(ConfigOptions& options, Console& console) {
  options.session.UseConfiguration();
  const std::optional<std::string> path = ConfigurationFile();
  if (!path) {
    return console.Fail(SResult(SResult::ERR_ENV_NOT_SET));
  }
  if (options.session.json()) {
    std::error_code ignored;
    console.PrintJson({{"path", *path}, {"exists", std::filesystem::exists(*path, ignored)}});
  } else {
    console.PrintLine(*path);
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
    {"set", "Change settings of the daemon, or with --client of this process's searches", &SetSettings},
    {"validate", "Print what deviates from the library's requirements, one line each", &Validate},
    {"path", "Print the name of the configuration file", &Path},
};

}  // namespace

void AddConfig(CLI::App& app, Console& console, ExitStatus& status) {
  CLI::App* verb = app.add_subcommand("config", "Show, check and change the settings");
  verb->require_subcommand(1);
  verb->footer(kConfigExamples);

  auto options = std::make_shared<ConfigOptions>();
  for (const SubVerb& sub_verb : kSubVerbs) {
    CLI::App* sub = verb->add_subcommand(sub_verb.name, sub_verb.help);
    if (sub_verb.perform == &Get) {
      sub->add_option("KEY", options->key, "setting, e.g. net.slp.useScopes")->required();
    }
    if (sub_verb.perform == &SetSettings) {
      sub->add_option("SETTING", options->assignments,
                      "setting and its value; several values are separated by commas")
          ->type_name("KEY=VALUE")
          ->required();
    }
    sub->add_flag("--client", options->client,
                  "the settings of this process's searches, instead of the daemon's");
    if (sub_verb.perform == &SetSettings || sub_verb.perform == &Path) {
      options->session.AddCommonOptions(*sub);
    } else {
      options->session.AddSearchOptions(*sub);
    }
    sub->footer(kConfigExamples);
    sub->callback([options, &sub_verb, &console, &status] { status = sub_verb.perform(*options, console); });
  }
}

}  // namespace kelsd_tool
