#include "integration/tool/running_tool.h"

#include "support/wait_until.h"

namespace kelsd::integration {
namespace {

std::vector<std::string> Command(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {KELSD_TOOL_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

}  // namespace

RunningTool::RunningTool(const std::vector<std::string>& arguments)
    : process_(Command(arguments), folder_.Path("output"), folder_.Path("error")) {}

bool RunningTool::WaitForOutput(const std::string& text, std::chrono::seconds limit) const {
  return support::WaitUntil([&] { return Output().find(text) != std::string::npos; }, limit);
}

support::ProgramRun RunningTool::Wait(std::chrono::seconds limit) {
  const std::optional<int> status = process_.Wait(limit);
  return {status.value_or(-1), Output(), Error()};
}

}  // namespace kelsd::integration
