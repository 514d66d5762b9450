// Entering the daemon with the service manager and removing it. One thread at a time.
#pragma once

#include <string>

#include "slpd/server/command_line.h"

namespace slp {

/// The service starts with the system and runs under an account that may do little. False, with what is wrong
/// and what to do about it in `problem`, when it could not be entered. `note` tells what was done.
[[nodiscard]] bool InstallService(const CommandLine& command_line, std::string& note, std::string& problem);

/// Stops the service, when it runs, and removes it. False as above.
[[nodiscard]] bool UninstallService(std::string& problem);

}  // namespace slp
