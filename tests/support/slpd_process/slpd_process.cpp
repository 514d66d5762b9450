#include "support/slpd_process/slpd_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "support/free_port.h"

extern char** environ;

namespace slp::support {
namespace {

constexpr int kPortTries = 5;
constexpr std::chrono::seconds kStartLimit{20};
// Nothing tells when another process has written a file; a short pause between two looks is all there is.
constexpr std::chrono::milliseconds kPause{5};

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

std::string NewFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "slpd-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder could be made");
  }
  return name;
}

}  // namespace

SlpdProcess::SlpdProcess(const SlpdOptions& options) : options_(options), folder_(options.folder) {
  if (folder_.empty()) {
    folder_ = NewFolder();
    own_folder_ = true;
  }
  WriteRegistrations(options_.registrations);
  for (int attempt = 0; attempt < kPortTries; ++attempt) {
    port_ = options_.port != 0 ? options_.port : FreePort(options_.address);
    WriteConfiguration(options_.configuration);
    Start();
    if (WaitUntilItServes() || options_.port != 0 ||
        Log().find("Address already in use") == std::string::npos) {
      return;
    }
  }
}

SlpdProcess::~SlpdProcess() {
  if (Running()) {
    Send(SIGKILL);
    Wait(kStartLimit);
  }
  if (own_folder_) {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
}

bool SlpdProcess::Running() {
  return !Wait(Milliseconds(0));
}

std::optional<int> SlpdProcess::Stop(Milliseconds limit) {
  if (Running()) {
    Send(SIGTERM);
  }
  return Wait(limit);
}

std::optional<int> SlpdProcess::Wait(Milliseconds limit) {
  WaitUntil(
      [this] {
        int status = 0;
        if (!status_ && ::waitpid(process_id_, &status, WNOHANG) == process_id_) {
          status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        return status_.has_value();
      },
      limit);
  return status_;
}

void SlpdProcess::Send(int signal) const {
  if (!status_) {
    ::kill(process_id_, signal);
  }
}

void SlpdProcess::Reload() {
  const auto reloads = [this] {
    const std::string log = Log();
    return CountOf(log, "slpd: reloaded") + CountOf(log, "slpd: not reloaded");
  };
  const std::size_t before = reloads();
  Send(SIGHUP);
  if (!WaitUntil([&] { return reloads() > before; }, kStartLimit)) {
    throw std::runtime_error("slpd did not react to SIGHUP: " + Log());
  }
}

std::string SlpdProcess::Log() const {
  return Content(log_file());
}

bool SlpdProcess::WaitForLog(const std::string& text, Milliseconds limit) const {
  return WaitUntil([&] { return Log().find(text) != std::string::npos; }, limit);
}

void SlpdProcess::WriteConfiguration(const std::string& further_lines) const {
  WriteFile(configuration_file(), "net.slp.interfaces = " + options_.address +
                                      "\nnet.slp.port = " + std::to_string(port_) + "\n" + further_lines);
}

void SlpdProcess::WriteRegistrations(const std::string& content) const {
  WriteFile(registration_file(), content);
}

void SlpdProcess::Start() {
  status_.reset();
  std::vector<std::string> arguments{KELSD_SLPD_PROGRAM, "--config",          configuration_file(),
                                     "--regfile",        registration_file(), "--pidfile",
                                     pid_file()};
  arguments.insert(arguments.end(), options_.arguments.begin(), options_.arguments.end());
  std::vector<char*> pointers;
  for (std::string& argument : arguments) {
    pointers.push_back(argument.data());
  }
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, log_file().c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t process_id = 0;
  const int error =
      ::posix_spawn(&process_id, KELSD_SLPD_PROGRAM, &actions, nullptr, pointers.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  if (error != 0) {
    throw std::runtime_error("slpd could not be started");
  }
  process_id_ = process_id;
}

bool SlpdProcess::WaitUntilItServes() {
  const std::string ours = std::to_string(process_id_) + " ";
  WaitUntil([&] { return !Running() || Content(pid_file()).compare(0, ours.size(), ours) == 0; },
            kStartLimit);
  return Running();
}

}  // namespace slp::support
