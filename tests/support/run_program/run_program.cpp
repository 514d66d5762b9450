#include "support/run_program/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <thread>

namespace kelsd::support {
namespace {

// A file in memory: the program never waits for its reader.
class Capture {
 public:
  Capture() : descriptor_(memfd_create("output", MFD_CLOEXEC)) {}
  ~Capture() { close(descriptor_); }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  int descriptor() const { return descriptor_; }

  std::string Text() const {
    std::string text;
    std::array<char, 4096> block;
    ssize_t got = 0;
    while ((got = pread(descriptor_, block.data(), block.size(), static_cast<off_t>(text.size()))) > 0) {
      text.append(block.data(), static_cast<std::size_t>(got));
    }
    return text;
  }

 private:
  const int descriptor_;
};

int WaitFor(pid_t pid, std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(pid, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(pid, SIGKILL);
      waitpid(pid, &status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

ProgramRun RunProgram(const std::vector<std::string>& command, std::chrono::seconds limit) {
  std::vector<std::string> texts = command;
  std::vector<char*> arguments;
  for (std::string& text : texts) {
    arguments.push_back(text.data());
  }
  arguments.push_back(nullptr);

  const Capture output;
  const Capture error;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, output.descriptor(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, error.descriptor(), STDERR_FILENO);
  pid_t pid = 0;
  const int failure = posix_spawn(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::runtime_error(command.front() + " could not be started");
  }
  const int status = WaitFor(pid, limit);
  return {status, output.Text(), error.Text()};
}

}  // namespace kelsd::support
