#include "integration/tool/tool_fixture.h"

#include <utility>

#include "integration/library/library_fixture.h"

namespace kelsd::integration {

support::ProgramRun RunTool(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {KELSD_TOOL_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return support::RunProgram(command);
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
