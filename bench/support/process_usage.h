// What a process of this host has used so far, as the system tells it. Any thread.
#pragma once

#include <chrono>
#include <cstddef>

namespace bench {

struct ProcessUsage {
  /// Of all its threads, by the process's CPU clock: to the nanosecond.
  std::chrono::nanoseconds processor_time{0};
  /// The same as process times show it: in whole clock ticks.
  std::chrono::milliseconds processor_time_in_ticks{0};
  std::size_t resident_bytes = 0;
};

/// Throws std::runtime_error when there is no such process.
ProcessUsage UsageOf(int process_id);

/// The step of process times.
std::chrono::milliseconds ClockTick();

}  // namespace bench
