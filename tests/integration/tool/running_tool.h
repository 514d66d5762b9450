// The built tool in the background, for verbs that stay until they are asked to end. One thread at a time.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/fake_platform/temporary_folder.h"
#include "support/run_program/run_program.h"

namespace kelsd::integration {

class RunningTool {
 public:
  /// Starts the tool; both its outputs go to files.
  explicit RunningTool(const std::vector<std::string>& arguments);
  /// Ends it by SIGKILL if it still runs.
  ~RunningTool();
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;

  /// Whether standard output came to hold `text` within `limit`.
  bool WaitForOutput(const std::string& text, std::chrono::seconds limit = std::chrono::seconds(30)) const;
  void Send(int signal) const;
  /// Waits for the end, which must come within `limit`; status -1 when it doesn't.
  support::ProgramRun Wait(std::chrono::seconds limit = std::chrono::seconds(30));

  std::string Output() const { return folder_.Read("output"); }
  std::string Error() const { return folder_.Read("error"); }

 private:
  TemporaryFolder folder_;
  pid_t pid_ = -1;
};

}  // namespace kelsd::integration
