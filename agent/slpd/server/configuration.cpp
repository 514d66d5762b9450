#include "slpd/server/configuration.h"

#include <filesystem>

#include "properties/catalogue.h"

namespace slp {
namespace {

// A file of which the system does not say that it is missing; whether it can be read turns out then.
bool MayExist(const std::string& path) {
  std::error_code ignored;
  return !path.empty() &&
         std::filesystem::status(path, ignored).type() != std::filesystem::file_type::not_found;
}

}  // namespace

Configuration ReadConfiguration(const ConfigurationSources& sources, std::vector<std::string>& problems) {
  std::vector<PropertyProblem> in_files;
  Configuration configuration;
  configuration.properties = Properties::Load(sources.files, in_files);
  if (MayExist(sources.files.global) && !configuration.properties.Get(kGlobalFileKey)) {
    in_files.push_back({sources.files.global, 0, "cannot be opened"});
  }
  if (!sources.files.environment.empty() && !configuration.properties.Get(kEnvironmentFileKey)) {
    in_files.push_back({sources.files.environment, 0, "cannot be opened"});
  }
  for (const PropertyProblem& problem : in_files) {
    problems.push_back(problem.ToString());
  }
  for (const auto& [key, value] : sources.overrides) {
    configuration.properties.Set(key, value);
  }
  configuration.settings = AgentSettings::From(configuration.properties);
  std::vector<std::string> unknown;
  configuration.trusted_networks =
      NetworkList(configuration.properties.GetStringList("net.slp.trustedNetworks"), unknown);
  for (const std::string& text : unknown) {
    problems.push_back("net.slp.trustedNetworks: \"" + text + "\" is no network");
  }
  std::string& registration_file = configuration.settings.registration_file;
  if (!sources.registration_file.empty()) {
    registration_file = sources.registration_file;
  } else if (registration_file.empty() && MayExist(sources.default_registration_file)) {
    registration_file = sources.default_registration_file;
  }
  return configuration;
}

}  // namespace slp
