// Where the platform keeps the global property file, and the process's environment. Any thread, as long as
// none changes the environment.
#pragma once

#include <string>

namespace slp {

/// `/etc/slp.conf`, or `slp.conf` in the folder of Windows.
std::string DefaultGlobalPropertyFile();

/// The variable's value; empty when there is no such variable.
std::string EnvironmentVariable(const char* name);

}  // namespace slp
