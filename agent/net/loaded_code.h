// The library that holds this code, in a program that may unload it. Any thread.
#pragma once

namespace slp {

/// From now on the code stays in memory until the process ends, whoever wants it unloaded: for threads that
/// nobody waits for. Throws std::system_error when it can't be kept.
void KeepCodeLoaded();

}  // namespace slp
