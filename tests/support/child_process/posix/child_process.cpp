#include "support/child_process/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "support/wait_until.h"

namespace kelsd::support {

struct ChildProcess::State {
  pid_t process = 0;
  std::optional<int> status = {};
};

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::string& output_file,
                           const std::string& error_file)
    : state_(std::make_unique<State>()) {
  std::vector<std::string> texts = command;
  std::vector<char*> arguments;
  for (std::string& text : texts) {
    arguments.push_back(text.data());
  }
  arguments.push_back(nullptr);

  constexpr int kAnew = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output_file.c_str(), kAnew, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, error_file.c_str(), kAnew, 0600);
  const int failure =
      posix_spawn(&state_->process, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::runtime_error(command.front() + " could not be started");
  }
}

ChildProcess::~ChildProcess() {
  Kill();
}

int ChildProcess::id() const {
  return state_->process;
}

std::optional<int> ChildProcess::Wait(Milliseconds limit) {
  WaitUntil(
      [this] {
        int status = 0;
        if (!state_->status && waitpid(state_->process, &status, WNOHANG) == state_->process) {
          state_->status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        return state_->status.has_value();
      },
      limit);
  return state_->status;
}

void ChildProcess::Send(int signal) {
  if (!Wait(Milliseconds(0))) {
    kill(state_->process, signal);
  }
}

void ChildProcess::Kill() {
  Send(SIGKILL);
  Wait(std::chrono::seconds(20));
}

}  // namespace kelsd::support
