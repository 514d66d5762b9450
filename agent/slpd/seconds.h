// The daemon's time. Values; any thread.
#pragma once

#include <chrono>

namespace slp {

using Seconds = std::chrono::seconds;

/// A moment by a clock that never goes back; its zero means nothing. Handed into the logic, never read there.
using Instant = std::chrono::milliseconds;

/// Lifetimes end at whole steps, so that services which leave at about the same time leave together.
using ExpiryStep = std::chrono::duration<std::chrono::milliseconds::rep, std::deci>;

}  // namespace slp
