// What the daemon takes from the tool that starts it. On Windows the service manager starts it, as it was
// installed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/tool_fixture.h"
#include "support/fake_platform/environment.h"

namespace kelsd::integration {
namespace {

using support::ProgramRun;
using testing::AllOf;
using testing::HasSubstr;

using ToolStartsSlpd = OwnDaemonTest;

TEST_F(ToolStartsSlpd, TakesAConfigurationFileOfTheCurrentFolder) {
  std::filesystem::rename(folder_.Path("slp.conf"), folder_.Path("other.conf"));
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(host_.folder());
  EXPECT_EQ(RunTool({"config", "path", "--config", "other.conf"}).output, folder_.Path("other.conf") + "\n");
  EXPECT_EQ(RunTool({"slpd", "start", "--config", "other.conf"}).status, 0);
  std::filesystem::current_path(before);
  EXPECT_EQ(
      RunTool({"find", "service:x.y:http", "--address", "127.0.0.1", "--config", folder_.Path("other.conf")})
          .status,
      1);
}

TEST_F(ToolStartsSlpd, TellsWhyTheDaemonDoesNotStart) {
  SetEnvironment("KELSD_SLPD", folder_.Path("nowhere"));
  const ProgramRun run = RunTool({"slpd", "start"});
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.error, AllOf(HasSubstr("Code: 34."), HasSubstr("\nhint: Check that slpd is installed")));
}

}  // namespace
}  // namespace kelsd::integration
