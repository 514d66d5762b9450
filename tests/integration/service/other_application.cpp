#include "integration/service/other_application.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <stdexcept>

extern char** environ;

namespace kelsd::integration {
namespace {

constexpr const char* kRegistered = "registered";

std::string ReadLine(int descriptor) {
  std::string line;
  char next = 0;
  while (read(descriptor, &next, 1) == 1 && next != '\n') {
    line += next;
  }
  return line;
}

}  // namespace

OtherApplication::OtherApplication(const std::string& url, int lifetime_seconds,
                                   std::chrono::milliseconds check_interval) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe could be made");
  }
  std::array<std::string, 4> words{KELSD_REGISTRAR_PROGRAM, url, std::to_string(lifetime_seconds),
                                   std::to_string(check_interval.count())};
  std::array<char*, 5> arguments{words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  const int error = posix_spawn(&process_, words[0].c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(input[0]);
  close(output[1]);
  input_ = input[1];
  const std::string said = error == 0 ? ReadLine(output[0]) : "It could not be started.";
  close(output[0]);
  if (said != kRegistered) {
    if (error == 0) {
      Kill();
    }
    close(input_);
    throw std::runtime_error("the other application: " + said);
  }
}

OtherApplication::~OtherApplication() {
  Kill();
  close(input_);
}

void OtherApplication::Kill() {
  if (process_ != 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }
}

}  // namespace kelsd::integration
