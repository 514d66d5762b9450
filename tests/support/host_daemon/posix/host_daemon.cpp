#include "support/host_daemon/host_daemon.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/posix/pid_file_probe.h"

namespace kelsd::support {
namespace {

constexpr std::time_t kLongAgo = 100;

std::string NewFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "kelsd-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder could be made");
  }
  return name;
}

pid_t HolderOf(const std::string& pid_file) {
  platform::PidFileState state;
  std::string problem;
  return platform::ProbePidFile(pid_file, state, problem) && state.held ? state.pid : 0;
}

}  // namespace

struct HostDaemon::State {
  pid_t cleaner = 0;
  int cleaner_pipe = -1;
  int held_pid_file = -1;

  void StartCleaner(const std::string& folder, const std::string& pid_file);
};

// A process of its own waits for the end of this one, however it comes, and clears up.
void HostDaemon::State::StartCleaner(const std::string& folder, const std::string& pid_file) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0 || (cleaner = fork()) < 0) {
    throw std::runtime_error("no process could be made");
  }
  if (cleaner != 0) {
    close(ends[0]);
    cleaner_pipe = ends[1];
    return;
  }
  close(ends[1]);
  char never = 0;
  while (read(ends[0], &never, 1) > 0) {
  }
  if (const pid_t daemon = HolderOf(pid_file); daemon > 0) {
    kill(daemon, SIGKILL);
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  _exit(0);
}

// The program that the library starts counts the starts, and becomes the daemon, with a registration file
// that isn't the system's.
HostDaemon::HostDaemon() : folder_(NewFolder()), state_(std::make_unique<State>()) {
  state_->StartCleaner(folder_, File("slpd.pid"));
  const std::string program = File("slpd");
  std::ofstream(File("slp.reg")).flush();
  std::ofstream(program) << "#!/bin/sh\necho >> '" << File("starts") << "'\nexec '" << KELSD_SLPD_PROGRAM
                         << "' \"$@\" --regfile '" << File("slp.reg") << "'\n";
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  setenv("KELSD_SLPD", program.c_str(), 1);
  setenv("KELSD_SLPD_PIDFILE", File("slpd.pid").c_str(), 1);
  setenv("OpenSLPConfig", File("slp.conf").c_str(), 1);
}

HostDaemon::~HostDaemon() {
  close(state_->held_pid_file);
  close(state_->cleaner_pipe);
  waitpid(state_->cleaner, nullptr, 0);
}

unsigned long HostDaemon::ProcessId() const {
  return static_cast<unsigned long>(HolderOf(File("slpd.pid")));
}

int HostDaemon::Starts() const {
  return static_cast<int>(FileContent(File("starts")).size());
}

void HostDaemon::Kill() const {
  if (const pid_t daemon = HolderOf(File("slpd.pid")); daemon > 0) {
    kill(daemon, SIGKILL);
  }
}

// This process holds the pid file as a daemon does.
void HostDaemon::RunWithoutServing(unsigned short) {
  const std::string content =
      std::to_string(getpid()) + " " + std::to_string(std::time(nullptr) - kLongAgo) + "\n";
  state_->held_pid_file = open(File("slpd.pid").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (flock(state_->held_pid_file, LOCK_EX | LOCK_NB) != 0 ||
      write(state_->held_pid_file, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
    throw std::runtime_error("the pid file could not be held");
  }
}

}  // namespace kelsd::support
