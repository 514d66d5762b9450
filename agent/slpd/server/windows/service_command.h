// The command line with which the service manager starts the daemon. Pure but for the current folder, the
// program's own path and "OpenSLPConfig"; any thread.
#pragma once

#include <string>
#include <vector>

#include "slpd/server/command_line.h"

namespace slp {

/// One text that the system takes apart into these arguments again. The first, the program, may hold no
/// quote.
std::string JoinArguments(const std::vector<std::string>& arguments);

/// The arguments of `slpd run` with all files of `command_line` by their full paths: the service has another
/// current folder. A service doesn't see the environment of those who use it, so the file that OpenSLPConfig
/// names here goes with it when --config names none.
std::vector<std::string> ServiceArguments(const std::string& program, const CommandLine& command_line);

/// The full path of this program's file.
std::string OwnProgram();

}  // namespace slp
