// kelsd find: the services of a type.
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "address_option.h"
#include "commands/commands.h"
#include "filter_options.h"
#include "kelsd/CKelSLPClient.h"
#include "progress.h"
#include "search_session.h"
#include "service_kind.h"

namespace kelsd_tool {
namespace {

using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

struct FindOptions {
  SearchSession session;
  FilterOptions filter;
  std::string type;
  std::vector<std::string> scopes;
  std::string address;
};

constexpr const char* kFindExamples = R"help(Examples:
  kelsd find zdrest
  kelsd find terminal --ip 10.0.0.5
  kelsd find zdrest --ns ns1 --server-name srv1
  kelsd find servicehost:render --address 10.0.0.7
  kelsd find service:printer.lab:lpr --scope DEFAULT --filter "(color=true)" --json

Exit status: 0 found, 1 nothing found, 2 usage, 3 failure.)help";

void PrintFound(Console& console, const std::vector<SKelServiceSearchResult>& services, bool json) {
  if (json) {
    nlohmann::json list = nlohmann::json::array();
    for (const SKelServiceSearchResult& service : services) {
      list.push_back({{"url", service.URL},
                      {"lifetime", service.Lifetime},
                      {"type", service.TypeString},
                      {"host", service.Host},
                      {"port", service.Port},
                      {"netFamily", service.NetFamily},
                      {"servicePart", service.ServicePart}});
    }
    console.PrintJson({{"services", list}});
    return;
  }
  if (services.empty()) {
    console.PrintNote("No services found.");
    return;
  }
  Table table({{"SERVICE URL"}, {"HOST", false, true}, {"PORT", true, true}, {"LIFETIME", true}});
  for (const SKelServiceSearchResult& service : services) {
    table.AddRow({service.URL, service.Host, service.Port == 0 ? "" : std::to_string(service.Port),
                  std::to_string(service.Lifetime) + " s"});
  }
  console.PrintTable(table);
}

ExitStatus Find(FindOptions& options, Console& console) {
  if (options.type.empty()) {
    return console.RejectUsage("the service type is empty; name one, e.g. zdrest or service:printer:lpr");
  }
  std::string filter;
  std::string problem;
  if (!options.filter.Build(filter, problem)) {
    return console.RejectUsage(problem);
  }
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }

  const ServiceKind kind = ParseServiceKind(options.type);
  const std::vector<std::string>& scopes = options.scopes.empty() ? kind.default_scopes : options.scopes;
  std::vector<SKelServiceSearchResult> services;
  SResult found;
  {
    const Progress progress("Searching " + kind.type);
    found = kelsd::CKelSLPClient::FindServices(services, kind.type, scopes, filter, options.address);
  }
  if (found.IsNotOk()) {
    return console.Fail(found);
  }
  PrintFound(console, services, options.session.json());
  return services.empty() ? kNothingFound : kFound;
}

}  // namespace

void AddFind(CLI::App& app, Console& console, ExitStatus& status) {
  auto options = std::make_shared<FindOptions>();
  CLI::App* verb = app.add_subcommand("find", "Find the services of a type");
  verb->add_option(
          "TYPE", options->type,
          "zdrest, terminal, servicehost[:CONCRETE], or any SLP service type such as service:printer:lpr")
      ->required();
  verb->add_option(
          "--scope", options->scopes,
          "scope to search, may be repeated (default: the family's scope for its own types, else the "
          "configured scopes)")
      ->type_name("S")
      ->allow_extra_args(false);
  verb->add_option("--address", options->address, "ask this one host by unicast instead of the whole network")
      ->type_name("A")
      ->check(IpAddressOnly());
  options->filter.AddTo(*verb);
  options->session.AddSearchOptions(*verb);
  verb->footer(kFindExamples);
  verb->callback([options, &console, &status] { status = Find(*options, console); });
}

}  // namespace kelsd_tool
