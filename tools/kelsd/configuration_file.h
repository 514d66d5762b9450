// Which SLP configuration file the library and its daemon use.
#pragma once

#include <optional>
#include <string>

namespace kelsd_tool {

/// What the variable OpenSLPConfig names, without white space at its ends, as the library reads it; none when
/// it is not set.
std::optional<std::string> ConfigurationFile();

}  // namespace kelsd_tool
