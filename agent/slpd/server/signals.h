// The signals by which the daemon is told what to do, and those that must not touch it.
#pragma once

#include <span>

namespace slp {

/// End cleanly.
std::span<const int> StopSignals();

/// Read the configuration and the registration file anew; none on Windows.
std::span<const int> ReloadSignals();

/// A log whose reader went away must not end the daemon. Once, before any thread is started.
void IgnoreBrokenPipes();

}  // namespace slp
