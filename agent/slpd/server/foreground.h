// The daemon as a plain program, told by signals what to do. Called once, on the main thread.
#pragma once

#include "slpd/server/command_line.h"

namespace slp {

/// Runs until a signal ends it. What keeps it from starting is the last line on the error output.
ExitStatus RunInForeground(const CommandLine& command_line);

}  // namespace slp
