// Runs a program to its end and keeps what it wrote. Any thread.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace kelsd::support {

struct ProgramRun {
  int status = -1;  ///< 128 and the signal's number when a signal ended it
  std::string output;
  std::string error;
};

/// `command`: the program's path and its arguments. Throws std::runtime_error when the program cannot be
/// started; kills it after `limit`.
ProgramRun RunProgram(const std::vector<std::string>& command,
                      std::chrono::seconds limit = std::chrono::seconds(60));

}  // namespace kelsd::support
