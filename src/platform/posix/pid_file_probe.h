// Looks at the daemon's pid file from outside: who holds it, and since when it serves. Any thread.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace kelsd::platform {

struct PidFileState {
  bool held = false;               ///< a daemon lives
  pid_t pid = 0;                   ///< 0 until it serves; never one that is known not to hold the file
  std::int64_t start_seconds = 0;  ///< since 1970
};

/// False, with `problem` set, when the file exists but cannot be looked at.
[[nodiscard]] bool ProbePidFile(const std::string& name, PidFileState& state, std::string& problem);

}  // namespace kelsd::platform
