#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/running_tool.h"
#include "integration/tool/tool_fixture.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

using Urls = std::vector<std::string>;

constexpr const char* kServer = "service:zdrest.tamro:http://127.0.0.1:8080";
constexpr const char* kPrinter = "service:printer.lab:lpr://127.0.0.1:515";

using ToolRegister = OwnDaemonTest;
using ToolDeregister = OwnDaemonTest;

TEST_F(ToolRegister, KeepsAServiceOfTheFamilyUntilCtrlC) {
  RunningTool tool({"register", "zdrest", "--address", "127.0.0.1:8080", "--attr", "x-version=4.2", "--attr",
                    "color=red"});
  ASSERT_TRUE(tool.WaitForOutput("Ctrl-C")) << tool.Error();
  EXPECT_EQ(Found("zdrest", {"--filter", "(x-version=4.2)"}), Urls{kServer});
  const json attributes = RunForJson({"attributes", kServer, "--address", "127.0.0.1"})["attributes"];
  EXPECT_EQ(attributes["x-version"], "4.2");
  EXPECT_TRUE(attributes.contains("x-server-name"));
  EXPECT_THAT(folder_.Read("slp.conf"), AllOf(HasSubstr("# of a test\r\n"), HasSubstr("TAMRO")));

  tool.Send(SIGINT);
  const ProgramRun run = tool.Wait();
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output, "Registered " + std::string(kServer) + ". Ctrl-C deregisters it.\nDeregistered " +
                            kServer + ".\n");
  EXPECT_EQ(run.error, "");
  EXPECT_THAT(Found("zdrest"), IsEmpty());
}

// Also when the request to end comes before the service is registered, or while it is.
TEST_F(ToolRegister, LeavesNothingBehindWheneverItIsEnded) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  int ended = 0;
  constexpr int kRegistered = -1;
  for (const int delay : {5, 10, 15, 20, 30, 40, 60, 80, 200, 400, kRegistered}) {
    RunningTool tool({"register", kPrinter});
    // Nothing tells how far the tool has come before the end; the delays are the test.
    if (delay == kRegistered) {
      EXPECT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
    } else {
      std::this_thread::sleep_for(std::chrono::milliseconds(delay));
    }
    tool.Send(SIGINT);
    const ProgramRun run = tool.Wait();
    // Before the tool has come to take signals it ends by them, with nothing done.
    EXPECT_TRUE(run.status == 0 || (run.status == 128 + SIGINT && run.output.empty())) << run.status;
    ended += run.status == 0 ? 1 : 0;
    EXPECT_THAT(Found("service:printer.lab:lpr"), IsEmpty()) << delay;
  }
  EXPECT_GT(ended, 0);
}

TEST_F(ToolRegister, TellsProgramsInLinesOfJson) {
  RunningTool tool({"register", kPrinter, "--scope", "lab", "--lifetime", "60", "--json"});
  ASSERT_TRUE(tool.WaitForOutput("\n")) << tool.Error();
  const json answer =
      RunForJson({"find", "service:printer.lab:lpr", "--scope", "lab", "--address", "127.0.0.1"});
  ASSERT_EQ(answer["services"].size(), 1U);
  EXPECT_LE(answer["services"][0]["lifetime"], 60);
  tool.Send(SIGTERM);
  EXPECT_EQ(tool.Wait().output, "{\"event\":\"registered\",\"url\":\"" + std::string(kPrinter) +
                                    "\"}\n{\"event\":\"deregistered\",\"url\":\"" + kPrinter + "\"}\n");
}

TEST_F(ToolRegister, RenewsWhenTheDaemonHasBeenKilled) {
  RunningTool tool({"register", kPrinter});
  ASSERT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
  const auto before = DaemonPid();
  ASSERT_TRUE(before);
  host_.Kill();
  // The library looks after its services every two seconds, and the daemon needs its time to start.
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  Urls found;
  while (found.empty() && std::chrono::steady_clock::now() < end) {
    const ProgramRun run =
        RunTool({"find", "service:printer.lab:lpr", "--address", "127.0.0.1", "--timeout", "1252", "--json"});
    if (run.status == 0) {
      found.push_back(json::parse(run.output)["services"][0]["url"]);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_EQ(found, Urls{kPrinter});
  tool.Send(SIGTERM);
  EXPECT_EQ(tool.Wait().status, 0);
}

TEST_F(ToolRegister, ExitsWith3WhenTheServiceIsGivenUp) {
  RunningTool tool({"register", kPrinter});
  ASSERT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
  // A port that cannot be had: the daemon does not come back.
  folder_.Write("slp.conf", "net.slp.port = 1\nnet.slp.interfaces = 192.0.2.1\n");
  const auto daemon = DaemonPid();
  ASSERT_TRUE(daemon);
  host_.Kill();
  const ProgramRun run = tool.Wait(std::chrono::seconds(60));
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.error,
              HasSubstr(std::string(kPrinter) + " could not be renewed and is given up.\nkelsd: "));
}

TEST_F(ToolRegister, ExitsWith3OnAUrlWithoutAnAddress) {
  const ProgramRun run = RunTool({"register", "service:printer.lab:lpr://"});
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.error, HasSubstr("The service URL address specification is empty. Code: 18."));
}

TEST_F(ToolDeregister, WithdrawsAServiceOfAnotherProcess) {
  RunningTool tool({"register", kPrinter});
  ASSERT_TRUE(tool.WaitForOutput("Registered")) << tool.Error();
  const ProgramRun run = RunTool({"deregister", kPrinter});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output, "Deregistered " + std::string(kPrinter) + ".\n");
  EXPECT_THAT(Found("service:printer.lab:lpr"), IsEmpty());
}

TEST_F(ToolDeregister, ExitsWith3OnSomethingThatIsNoUrl) {
  const ProgramRun run = RunTool({"deregister", "printer"});
  EXPECT_EQ(run.status, 3);
  EXPECT_THAT(run.error, HasSubstr("The service URL is invalid/malformed. Code: 17."));
}

}  // namespace
}  // namespace kelsd::integration
