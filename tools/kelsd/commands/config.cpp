// kelsd config: the settings that searches use.
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "attribute_view.h"
#include "commands/commands.h"
#include "config_view.h"
#include "kelsd/CKelSLPClient.h"
#include "search_session.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelSLPClientConfig;
using kelsd::CKelSLPConfig;
using kelsd::SResult;

struct ShowOptions {
  SearchSession session;
  bool client = false;
};

constexpr const char* kExamples = R"help(Examples:
  kelsd config show --client
  kelsd config show --client --timeout 5000 --json

A '*' marks a value that differs from the default of the SLP standard.
Exit status: 0 shown, 2 usage, 3 failure.)help";

void PrintSettings(Console& console, const std::vector<Setting>& settings, bool json) {
  if (json) {
    nlohmann::json list = nlohmann::json::array();
    for (const Setting& setting : settings) {
      nlohmann::json row = {{"property", CKelSLPConfig::ToStringKey(setting.property)},
                            {"label", CKelSLPConfig::ToString(setting.property)},
                            {"value", setting.value}};
      if (setting.has_standard) {
        row["isStandardDefault"] = setting.is_standard;
      }
      list.push_back(row);
    }
    console.PrintJson({{"settings", list}});
    return;
  }
  Table table({{""}, {"PROPERTY"}, {"VALUE"}, {"MEANING", false, true}});
  for (const Setting& setting : settings) {
    table.AddRow({setting.is_standard ? "" : "*", CKelSLPConfig::ToStringKey(setting.property),
                  ToText(setting.value), CKelSLPConfig::ToString(setting.property)});
  }
  console.PrintTable(table);
}

ExitStatus Show(ShowOptions& options, Console& console) {
  if (!options.client) {
    return console.RejectUsage("say which configuration: --client for the one that searches use");
  }
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }
  CKelSLPClientConfig config;
  std::vector<SResult> problems;
  if (const SResult read = kelsd::CKelSLPClient::GetSLPClientConfig(config, problems); read.IsNotOk()) {
    return console.Fail(read);
  }
  for (const SResult& problem : problems) {
    console.PrintError(problem);
  }
  PrintSettings(console, ClientSettings(config), options.session.json());
  return kFound;
}

}  // namespace

void AddConfig(CLI::App& app, Console& console, ExitStatus& status) {
  CLI::App* verb = app.add_subcommand("config", "Show the settings");
  verb->require_subcommand(1);
  verb->footer(kExamples);

  auto options = std::make_shared<ShowOptions>();
  CLI::App* show = verb->add_subcommand("show", "Show the settings in force");
  show->add_flag("--client", options->client, "the settings that searches use");
  options->session.AddSearchOptions(*show);
  show->footer(kExamples);
  show->callback([options, &console, &status] { status = Show(*options, console); });
}

}  // namespace kelsd_tool
