// kelsd parse: the parts of a service URL.
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "commands/commands.h"
#include "kelsd/CKelSLP.h"

namespace kelsd_tool {
namespace {

struct ParseOptions {
  std::string url;
  bool json = false;
};

constexpr const char* kParseExamples = R"help(Examples:
  kelsd parse service:zdrest.tamro:http://10.0.0.5:8080/api
  kelsd parse service:servicehost.tamro:render://10.0.0.7:9000 --json

Exit status: 0 parsed, 2 usage, 3 not a service URL.)help";

ExitStatus Parse(const ParseOptions& options, Console& console) {
  kelsd::SKelServiceSearchResult parts;
  if (const kelsd::SResult parsed = kelsd::CKelSLP::ParseServiceURL(parts, options.url); parsed.IsNotOk()) {
    return console.Fail(parsed);
  }
  if (options.json) {
    console.PrintJson({{"url", options.url},
                       {"type", parts.TypeString},
                       {"host", parts.Host},
                       {"port", parts.Port},
                       {"netFamily", parts.NetFamily},
                       {"servicePart", parts.ServicePart}});
    return kFound;
  }
  Table table({{"PART"}, {"VALUE"}});
  table.AddRow({"type", parts.TypeString});
  table.AddRow({"host", parts.Host});
  table.AddRow({"port", parts.Port == 0 ? "(none)" : std::to_string(parts.Port)});
  table.AddRow({"net family", parts.NetFamily.empty() ? "(IP)" : parts.NetFamily});
  table.AddRow({"service part", parts.ServicePart.empty() ? "(none)" : parts.ServicePart});
  console.PrintTable(table);
  return kFound;
}

}  // namespace

void AddParse(CLI::App& app, Console& console, ExitStatus& status) {
  auto options = std::make_shared<ParseOptions>();
  CLI::App* verb = app.add_subcommand("parse", "Split a service URL into its parts");
  verb->add_option("URL", options->url, "service URL")->required();
  verb->add_flag("--json", options->json, "JSON for programs instead of a table");
  verb->footer(kParseExamples);
  verb->callback([options, &console, &status] { status = Parse(*options, console); });
}

}  // namespace kelsd_tool
