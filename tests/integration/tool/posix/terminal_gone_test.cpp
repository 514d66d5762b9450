// What becomes of a registration when the tool's terminal goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/running_tool.h"
#include "integration/tool/tool_fixture.h"

namespace kelsd::integration {
namespace {

using testing::IsEmpty;

constexpr const char* kPrinter = "service:printer.lab:lpr://127.0.0.1:515";

using Urls = std::vector<std::string>;
using ToolTerminal = OwnDaemonTest;

TEST_F(ToolTerminal, OutlivesItsTerminalUnderNohup) {
  const auto inherited = std::signal(SIGHUP, SIG_IGN);
  RunningTool tool({"register", kPrinter});
  std::signal(SIGHUP, inherited);
  ASSERT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
  tool.Send(SIGHUP);
  EXPECT_FALSE(tool.WaitForOutput("Deregistered", std::chrono::seconds(1)));
  EXPECT_EQ(Found("service:printer.lab:lpr"), Urls{kPrinter});
  tool.Send(SIGTERM);
  EXPECT_EQ(tool.Wait().status, 0);
}

TEST_F(ToolTerminal, DeregistersWhenItsTerminalGoes) {
  RunningTool tool({"register", kPrinter});
  ASSERT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
  tool.Send(SIGHUP);
  EXPECT_EQ(tool.Wait().status, 0);
  EXPECT_THAT(Found("service:printer.lab:lpr"), IsEmpty());
}

}  // namespace
}  // namespace kelsd::integration
