// The daemon as a service of the operating system's service manager. Called once, on the main thread.
#pragma once

#include "slpd/server/command_line.h"

namespace slp {

/// Does what the command line's verb says: enters the service with the service manager, removes it, or is it.
/// What goes wrong stands on the error output with what to do about it. Systems without such a manager refuse
/// with kUsage.
ExitStatus PerformServiceVerb(const CommandLine& command_line);

}  // namespace slp
