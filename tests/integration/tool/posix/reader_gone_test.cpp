// The tool when nobody takes its output any more, or it has nowhere to go.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/tool_fixture.h"

namespace kelsd::integration {
namespace {

using testing::IsEmpty;

constexpr const char* kPrinter = "service:printer.lab:lpr://127.0.0.1:515";

using ToolWithoutReader = OwnDaemonTest;

// Starts the tool with an output that nobody reads.
pid_t StartWithoutReader(const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  EXPECT_EQ(pipe(ends.data()), 0);
  close(ends[0]);
  std::vector<std::string> texts = {KELSD_TOOL_PROGRAM};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, ends[1]);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  EXPECT_EQ(posix_spawn(&pid, pointers[0], &actions, nullptr, pointers.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  return pid;
}

TEST_F(ToolWithoutReader, KeepsTheServiceAndTakesItBack) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  const pid_t tool = StartWithoutReader({"register", kPrinter});
  ASSERT_GT(tool, 0);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  std::vector<std::string> found;
  while (found.empty() && std::chrono::steady_clock::now() < end) {
    found = Found("service:printer.lab:lpr");
    // The tool has no other way to tell that it is done.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(found, std::vector<std::string>{kPrinter});
  ASSERT_EQ(kill(tool, SIGTERM), 0);
  int status = 0;
  ASSERT_EQ(waitpid(tool, &status, 0), tool);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_THAT(Found("service:printer.lab:lpr"), IsEmpty());
}

TEST_F(ToolWithoutReader, SaysThatItsOutputCouldNotBeWritten) {
  const support::ProgramRun run =
      support::RunProgram({"/bin/sh", "-c", "exec \"$1\" config show >/dev/full", "sh", KELSD_TOOL_PROGRAM});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.error, "kelsd: the output could not be written\n");
}

}  // namespace
}  // namespace kelsd::integration
