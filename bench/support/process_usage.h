// What a process of this host has used so far, as the system's process files tell it. Any thread.
#pragma once

#include <chrono>
#include <cstddef>

namespace bench {

struct ProcessUsage {
  std::chrono::milliseconds processor_time{0};
  std::size_t resident_bytes = 0;
};

/// Throws std::runtime_error when there is no such process.
ProcessUsage UsageOf(int process_id);

}  // namespace bench
