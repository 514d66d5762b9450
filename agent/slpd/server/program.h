// The whole program behind main: command line, pid file, log, signals, event loop. Called once, on the main
// thread.
#pragma once

namespace slp {

/// Runs until a signal ends it; the process's exit status.
int RunProgram(int argument_count, const char* const* arguments);

}  // namespace slp
