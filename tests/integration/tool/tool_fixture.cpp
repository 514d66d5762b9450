#include "integration/tool/tool_fixture.h"

#include <filesystem>
#include <utility>

#include "integration/library/library_fixture.h"

namespace kelsd::integration {

namespace {

// Taken before a test can go to another folder: the build names the program as the host that builds does, on
// Windows without the drive.
const std::string tool_program = std::filesystem::absolute(KELSD_TOOL_PROGRAM).make_preferred().string();

}  // namespace

std::vector<std::string> ToolCommand(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {tool_program};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

support::ProgramRun RunTool(const std::vector<std::string>& arguments) {
  return support::RunProgram(ToolCommand(arguments));
}

void ToolTest::SetUp() {
  slp::support::SlpdOptions options;
  options.configuration = "net.slp.useScopes = TAMRO,LAB\n";
  options.registrations = RegistrationFile(FamilyServices());
  daemon_ = std::make_unique<slp::support::SlpdProcess>(options);
  ASSERT_TRUE(daemon_->Running()) << daemon_->Log();
}

support::ProgramRun ToolTest::Run(std::vector<std::string> arguments) const {
  arguments.insert(arguments.end(), {"--config", daemon_->configuration_file()});
  return RunTool(arguments);
}

nlohmann::json ToolTest::RunForJson(std::vector<std::string> arguments) const {
  arguments.emplace_back("--json");
  const support::ProgramRun run = Run(std::move(arguments));
  EXPECT_EQ(run.error, "");
  return nlohmann::json::parse(run.output, nullptr, false);
}

}  // namespace kelsd::integration
