#include "integration/tool/running_tool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <thread>

namespace kelsd::integration {
namespace {

// Nothing tells when another process has written a file or ended; a short pause between two looks.
constexpr std::chrono::milliseconds kPause{5};

bool WaitUntil(const std::function<bool()>& condition, std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace

RunningTool::RunningTool(const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {KELSD_TOOL_PROGRAM};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  const std::string output = folder_.Write("output", "");
  const std::string error = folder_.Write("error", "");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error.c_str(), O_WRONLY, 0);
  EXPECT_EQ(posix_spawn(&pid_, pointers[0], &actions, nullptr, pointers.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
}

RunningTool::~RunningTool() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
}

bool RunningTool::WaitForOutput(const std::string& text, std::chrono::seconds limit) const {
  return WaitUntil([&] { return Output().find(text) != std::string::npos; }, limit);
}

void RunningTool::Send(int signal) const {
  ASSERT_GT(pid_, 0);
  ASSERT_EQ(kill(pid_, signal), 0);
}

support::ProgramRun RunningTool::Wait(std::chrono::seconds limit) {
  int status = 0;
  if (pid_ <= 0 || !WaitUntil([&] { return waitpid(pid_, &status, WNOHANG) == pid_; }, limit)) {
    return {-1, Output(), Error()};
  }
  pid_ = -1;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), Output(), Error()};
}

}  // namespace kelsd::integration
