// The daemon's configuration: files, overlaid by the command line. Reads files; no state, any thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "net/network_list.h"
#include "properties/properties.h"
#include "slpd/agent_settings.h"

namespace slp {

struct ConfigurationSources {
  PropertyFiles files = PropertyFiles::Default();
  std::vector<std::pair<std::string, std::string>> overrides;  ///< --property, over every file
  std::string registration_file;                               ///< --regfile, over net.slp.serializedRegURL
  std::string default_registration_file;                       ///< taken when neither names one and it exists
};

struct Configuration {
  Properties properties;
  AgentSettings settings;
  NetworkList trusted_networks;  ///< net.slp.trustedNetworks
};

/// What cannot be used is told in `problems`, as "FILE:LINE: TEXT" where it stands in a file, and its default
/// holds. A missing global file is no problem, a missing environment file (or --config) is one.
Configuration ReadConfiguration(const ConfigurationSources& sources, std::vector<std::string>& problems);

}  // namespace slp
