// The built tool in the background, for verbs that stay until they are asked to end. One thread at a time.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "support/child_process/child_process.h"
#include "support/fake_platform/temporary_folder.h"
#include "support/run_program/run_program.h"

namespace kelsd::integration {

class RunningTool {
 public:
  /// Starts the tool; both its outputs go to files.
  explicit RunningTool(const std::vector<std::string>& arguments);

  /// Whether standard output came to hold `text` within `limit`.
  bool WaitForOutput(const std::string& text, std::chrono::seconds limit = std::chrono::seconds(30)) const;
  /// See ChildProcess.
  void Send(int signal) { process_.Send(signal); }
  /// Waits for the end, which must come within `limit`; status -1 when it doesn't.
  support::ProgramRun Wait(std::chrono::seconds limit = std::chrono::seconds(30));

  std::string Output() const { return folder_.ReadText("output"); }
  std::string Error() const { return folder_.ReadText("error"); }

 private:
  TemporaryFolder folder_;
  support::ChildProcess process_;
};

}  // namespace kelsd::integration
