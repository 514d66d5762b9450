#include "integration/tool/running_tool.h"

#include "integration/tool/tool_fixture.h"
#include "support/wait_until.h"

namespace kelsd::integration {
RunningTool::RunningTool(const std::vector<std::string>& arguments)
    : process_(ToolCommand(arguments), folder_.Path("output"), folder_.Path("error")) {}

bool RunningTool::WaitForOutput(const std::string& text, std::chrono::seconds limit) const {
  return support::WaitUntil([&] { return Output().find(text) != std::string::npos; }, limit);
}

support::ProgramRun RunningTool::Wait(std::chrono::seconds limit) {
  const std::optional<int> status = process_.Wait(limit);
  return {status.value_or(-1), Output(), Error()};
}

}  // namespace kelsd::integration
