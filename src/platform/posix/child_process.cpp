#include "platform/posix/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>
#include <utility>

namespace kelsd::platform {
namespace {

constexpr std::size_t kLastWordsLimit = 4096;

std::string ErrorText(int error) {
  return std::generic_category().message(error);
}

// How the child begins: what it inherits and what not.
class SpawnSettings {
 public:
  explicit SpawnSettings(int error_output) {
    posix_spawn_file_actions_init(&actions);
    // First: in a process without standard input or output, `error_output` is one of the two that follow.
    posix_spawn_file_actions_adddup2(&actions, error_output, STDERR_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);

    posix_spawnattr_init(&attributes);
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
};

}  // namespace

std::optional<ChildProcess> ChildProcess::Start(const std::string& program,
                                                const std::vector<std::string>& arguments,
                                                std::string& problem) {
  // A file in memory, not a pipe: the child never waits for a reader and never loses one.
  const int error_output = memfd_create("slpd error output", MFD_CLOEXEC);
  if (error_output < 0) {
    problem = ErrorText(errno);
    return std::nullopt;
  }
  std::vector<std::string> texts;
  texts.reserve(arguments.size() + 1);
  texts.push_back(program);
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);

  const SpawnSettings settings(error_output);
  pid_t pid = -1;
  const int error =
      posix_spawn(&pid, program.c_str(), &settings.actions, &settings.attributes, pointers.data(), environ);
  if (error != 0) {
    problem = program + ": " + ErrorText(error);
    close(error_output);
    return std::nullopt;
  }
  return ChildProcess(pid, error_output);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(other.pid_),
      error_output_(std::exchange(other.error_output_, -1)),
      runs_(other.runs_),
      exit_status_(other.exit_status_) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    ForgetErrorOutput();
    pid_ = other.pid_;
    error_output_ = std::exchange(other.error_output_, -1);
    runs_ = other.runs_;
    exit_status_ = other.exit_status_;
  }
  return *this;
}

ChildProcess::~ChildProcess() {
  ForgetErrorOutput();
}

bool ChildProcess::Runs() {
  if (!runs_) {
    return false;
  }
  int status = 0;
  const pid_t ended = waitpid(pid_, &status, WNOHANG);
  if (ended == 0) {
    return true;
  }
  if (ended == pid_) {
    exit_status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    runs_ = false;
    return false;
  }
  // Somebody else collects this process's children (or ignores SIGCHLD): the process table tells as much.
  runs_ = errno == EINTR || kill(pid_, 0) == 0 || errno == EPERM;
  return runs_;
}

std::string ChildProcess::LastWords() const {
  const off_t size = lseek(error_output_, 0, SEEK_END);
  if (size <= 0) {
    return {};
  }
  std::array<char, kLastWordsLimit> tail{};
  const off_t from = size > static_cast<off_t>(tail.size()) ? size - static_cast<off_t>(tail.size()) : 0;
  const ssize_t got = pread(error_output_, tail.data(), tail.size(), from);
  std::string text(tail.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  text.erase(text.find_last_not_of(" \r\n\t") + 1);
  const auto line = text.rfind('\n');
  return line == std::string::npos ? text : text.substr(line + 1);
}

void ChildProcess::ForgetErrorOutput() {
  if (error_output_ >= 0) {
    close(std::exchange(error_output_, -1));
  }
}

}  // namespace kelsd::platform
