#include "support/run_program/run_program.h"

#include "support/child_process/child_process.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::support {

ProgramRun RunProgram(const std::vector<std::string>& command, std::chrono::seconds limit) {
  const TemporaryFolder folder;
  const std::string output = folder.Path("output");
  const std::string error = folder.Path("error");
  ChildProcess program(command, output, error);
  if (!program.Wait(limit)) {
    program.Kill();
  }
  return {program.Wait({}).value_or(-1), folder.ReadText("output"), folder.ReadText("error")};
}

}  // namespace kelsd::support
