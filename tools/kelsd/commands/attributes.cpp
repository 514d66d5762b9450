// kelsd attributes: what one service says of itself.
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "address_option.h"
#include "attribute_view.h"
#include "commands/commands.h"
#include "kelsd/CKelSLPClient.h"
#include "progress.h"
#include "search_session.h"
#include "service_kind.h"

namespace kelsd_tool {
namespace {

using kelsd::CKelServiceTypeTamroBase;
using kelsd::CKelSLPClient;
using kelsd::IKelServiceType;
using kelsd::SKelServiceAttributeSearchResult;
using kelsd::SKelServiceSearchResult;
using kelsd::SResult;

struct AttributesOptions {
  SearchSession session;
  std::string url;
  std::vector<std::string> tags;
  std::vector<std::string> scopes;
  std::string address;
};

constexpr const char* kAttributesExamples = R"help(Examples:
  kelsd attributes service:zdrest.tamro:http://10.0.0.5:8080
  kelsd attributes service:zdrest.tamro:http://10.0.0.5:8080 --tag x-server-name --json
  kelsd attributes service:printer.lab:lpr://10.0.0.9 --scope DEFAULT --address 10.0.0.9

Exit status: 0 found, 1 nothing found, 2 usage, 3 failure.)help";

using NamedValues = std::vector<std::pair<std::string, nlohmann::json>>;

// The tags that the answer holds, for a service of the family: typed. Otherwise, and for tags that the family
// does not know: the text of the list.
NamedValues Values(const SKelServiceAttributeSearchResult& found, CKelServiceTypeTamroBase* service) {
  NamedValues values;
  if (service != nullptr) {
    service->Initialize(found);
    std::vector<IKelServiceType::EAttr> present;
    for (const auto& [tag, text] : found.Attributes) {
      if (service->HasAttribute(tag)) {
        present.push_back(tag);
      }
    }
    values = TypedAttributes(*service, present);
  }
  for (const auto& [tag, text] : RawAttributes(found.AttributeString)) {
    const IKelServiceType::EAttr known = IKelServiceType::StringToEAttr(tag, nullptr);
    const bool shown =
        service != nullptr && service->HasAttribute(known) && found.Attributes.count(known) != 0;
    if (!shown) {
      const auto parsed = found.Attributes.find(known);
      values.emplace_back(tag, parsed == found.Attributes.end() ? text : parsed->second);
    }
  }
  return values;
}

void PrintValues(Console& console, const std::string& url, const NamedValues& values, bool json) {
  if (json) {
    nlohmann::json attributes = nlohmann::json::object();
    for (const auto& [tag, value] : values) {
      attributes[tag] = value;
    }
    console.PrintJson({{"url", url}, {"attributes", attributes}});
    return;
  }
  if (values.empty()) {
    console.PrintNote("No attributes found.");
    return;
  }
  Table table({{"ATTRIBUTE"}, {"VALUE"}});
  for (const auto& [tag, value] : values) {
    table.AddRow({tag, ToText(value)});
  }
  console.PrintTable(table);
}

ExitStatus Attributes(AttributesOptions& options, Console& console) {
  SKelServiceSearchResult parts;
  if (const SResult parsed = kelsd::CKelSLP::ParseServiceURL(parts, options.url); parsed.IsNotOk()) {
    console.PrintError(parsed);
    return kUsage;
  }
  if (const std::optional<ExitStatus> status = options.session.Open(console)) {
    return *status;
  }

  const std::unique_ptr<CKelServiceTypeTamroBase> service = MakeFamilyService(parts.TypeString, options.url);
  const std::vector<std::string> scopes =
      options.scopes.empty() && service != nullptr ? service->GetScopes() : options.scopes;
  SKelServiceAttributeSearchResult found;
  SResult outcome;
  {
    const Progress progress("Reading attributes of " + options.url);
    if (!options.tags.empty()) {
      outcome = CKelSLPClient::FindAttributes(found, options.url, options.tags, scopes, options.address);
    } else {
      const auto tags =
          service == nullptr ? std::vector<IKelServiceType::EAttr>() : service->GetAttributeTags();
      outcome = CKelSLPClient::FindAttributes(found, options.url, tags, scopes, options.address);
    }
  }
  if (outcome.IsNotOk()) {
    return console.Fail(outcome);
  }
  const NamedValues values = Values(found, service.get());
  PrintValues(console, options.url, values, options.session.json());
  return values.empty() ? kNothingFound : kFound;
}

}  // namespace

void AddAttributes(CLI::App& app, Console& console, ExitStatus& status) {
  auto options = std::make_shared<AttributesOptions>();
  CLI::App* verb = app.add_subcommand("attributes", "Read the attributes of a service");
  verb->add_option("URL", options->url, "service URL as 'kelsd find' prints it")->required();
  verb->add_option(
          "--tag", options->tags,
          "attribute to read, may be repeated (default: all that the type carries, or all there are)")
      ->type_name("T")
      ->allow_extra_args(false);
  verb->add_option(
          "--scope", options->scopes,
          "scope of the service, may be repeated (default: the family's scope for its own types, else the "
          "configured scopes)")
      ->type_name("S")
      ->allow_extra_args(false);
  verb->add_option("--address", options->address, "ask this one host by unicast instead of the whole network")
      ->type_name("A")
      ->check(IpAddressOnly());
  options->session.AddSearchOptions(*verb);
  verb->footer(kAttributesExamples);
  verb->callback([options, &console, &status] { status = Attributes(*options, console); });
}

}  // namespace kelsd_tool
