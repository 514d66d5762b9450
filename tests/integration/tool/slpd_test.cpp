#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/tool_fixture.h"
#include "support/fake_platform/environment.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::AllOf;
using testing::HasSubstr;

using ToolSlpd = OwnDaemonTest;

TEST_F(ToolSlpd, SaysWhetherTheDaemonRuns) {
  ProgramRun run = RunTool({"slpd", "status"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "slpd is not running.\n");
  EXPECT_EQ(run.error, "hint: Start it: kelsd slpd start\n");
  EXPECT_EQ(RunForJson({"slpd", "status"}), (json{{"running", false}}));

  run = RunTool({"slpd", "start"});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output, "slpd is running.\n");
  EXPECT_EQ(RunTool({"slpd", "status"}).status, 0);
  EXPECT_EQ(RunForJson({"slpd", "status"}), (json{{"running", true}}));
}

TEST_F(ToolSlpd, StopsTwiceAsWellAsOnce) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  for (int i = 0; i < 2; ++i) {
    const ProgramRun run = RunTool({"slpd", "stop"});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.output, "slpd is not running.\n");
  }
}

TEST_F(ToolSlpd, FindsAConfigurationFileOfTheCurrentFolder) {
  folder_.Write("other.conf", "");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(host_.folder());
  EXPECT_EQ(RunTool({"config", "path", "--config", "other.conf"}).output, folder_.Path("other.conf") + "\n");
  std::filesystem::current_path(before);
}

TEST_F(ToolSlpd, RestartsIntoAnotherProcess) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  const auto before = DaemonPid();
  const ProgramRun run = RunTool({"slpd", "restart"});
  EXPECT_EQ(run.status, 0) << run.error;
  ASSERT_TRUE(before && DaemonPid());
  EXPECT_NE(DaemonPid(), before);
}

TEST_F(ToolSlpd, ExitsWith3AndAHintOnASecondStart) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  const ProgramRun run = RunTool({"slpd", "start"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.output, "");
  EXPECT_THAT(run.error, AllOf(HasSubstr("Code: 32."), HasSubstr("\nhint: Nothing to do")));
}

}  // namespace
}  // namespace kelsd::integration
