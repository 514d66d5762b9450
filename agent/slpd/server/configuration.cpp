#include "slpd/server/configuration.h"

#include <fstream>

#include "properties/catalogue.h"

namespace slp {

Configuration ReadConfiguration(const ConfigurationSources& sources, std::vector<std::string>& problems) {
  std::vector<PropertyProblem> in_files;
  Configuration configuration;
  configuration.properties = Properties::Load(sources.files, in_files);
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
  } else if (registration_file.empty() && std::ifstream(sources.default_registration_file)) {
    registration_file = sources.default_registration_file;
  }
  return configuration;
}

}  // namespace slp
