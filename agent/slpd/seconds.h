// The daemon's time. Values; any thread.
#pragma once

#include <chrono>

namespace slp {

/// Whole seconds of a clock that never goes back; its zero means nothing. Handed into the logic, never read
/// there.
using Seconds = std::chrono::seconds;

}  // namespace slp
