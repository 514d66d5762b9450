// The whole program behind main, from command line to exit status. Called once, on the main
// thread.
#pragma once

namespace slp {

/// Does what the command line says; the process's exit status.
int RunProgram(int argument_count, const char* const* arguments);

}  // namespace slp
