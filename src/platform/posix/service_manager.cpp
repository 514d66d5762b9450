// The service "slpd" on a system without a service control manager: a process that this library starts itself
// and that any process of the host finds by its pid file. It runs exactly while that file's lock is held.
#include "platform/service_manager.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include "platform/posix/child_process.h"
#include "platform/posix/pid_file_probe.h"
#include "platform/posix/slpd_files.h"

namespace kelsd::platform {
namespace {

constexpr const char* kServiceName = "slpd";
// How long a start or a stop is watched before its caller is left to ask again.
constexpr std::chrono::seconds kStartWatch{10};
constexpr std::chrono::seconds kStopWatch{3};
constexpr std::chrono::milliseconds kWatchPause{5};
constexpr std::uint32_t kPendingWaitHint = 10000;

thread_local std::string last_error_text;

// A handle of the manager or of the service; only the latter has a pid file.
struct ManagedHandle {
  std::string pid_file;
};

struct ProcessHandle {
  std::int64_t start_seconds = 0;
};

bool Fail(const std::string& text) {
  last_error_text = text;
  return false;
}

// Whether `done` became true within `limit`.
bool Watch(std::chrono::steady_clock::duration limit, const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!done()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kWatchPause);
  }
  return true;
}

class ProcessServices : public ServiceManager {
 public:
  Handle OpenManager(std::uint32_t) override { return new ManagedHandle; }

  Handle OpenNamed(Handle, const std::string& name, std::uint32_t) override {
    if (name != kServiceName) {
      Fail("There is no service '" + name + "'.");
      return nullptr;
    }
    std::string pid_file = SlpdPidFile();
    if (pid_file.empty()) {
      Fail("There is no place for the pid file: set KELSD_SLPD_PIDFILE or XDG_RUNTIME_DIR.");
      return nullptr;
    }
    return new ManagedHandle{std::move(pid_file)};
  }

  void CloseManaged(Handle handle) override { delete static_cast<ManagedHandle*>(handle); }

  bool QueryStatus(Handle service, ServiceStatus& status) override {
    const std::lock_guard guard(mutex_);
    return Query(PidFileOf(service), status);
  }

  // 1. Start the program; where a daemon runs already, it ends by itself.
  // 2. Watch until it serves, or has ended: then its last words are the reason. A daemon that another process
  //    started at the same moment is as good as this one.
  bool RequestStart(Handle service) override {
    const std::lock_guard guard(mutex_);
    const std::string& pid_file = PidFileOf(service);
    const std::string program = SlpdProgram();
    if (program.empty()) {
      return Fail("The program slpd was not found beside this library: set KELSD_SLPD to where it is.");
    }
    std::string problem;
    std::optional<ChildProcess> child =
        ChildProcess::Start(program, {"--pidfile", pid_file, "--log", SlpdLogFile(pid_file)}, problem);
    if (!child) {
      return Fail(problem);
    }
    child_ = std::move(child);
    stopping_ = 0;

    PidFileState state;
    Watch(kStartWatch, [&] {
      return !child_->Runs() || (ProbePidFile(pid_file, state, problem) && state.pid == child_->pid());
    });
    if (!child_->Runs()) {
      const std::string words = child_->LastWords();
      child_->ForgetErrorOutput();
      if (ProbePidFile(pid_file, state, problem) && state.held) {
        return true;
      }
      return Fail(words.empty() ? "slpd ended with status " + std::to_string(child_->exit_status()) + "."
                                : words);
    }
    child_->ForgetErrorOutput();
    return true;
  }

  bool RequestStop(Handle service, ServiceStatus& status) override {
    const std::lock_guard guard(mutex_);
    const std::string& pid_file = PidFileOf(service);
    PidFileState state;
    std::string problem;
    if (!ProbePidFile(pid_file, state, problem)) {
      return Fail(problem);
    }
    if (!state.held || state.pid == 0) {
      return Fail("slpd is not running.");
    }
    if (kill(state.pid, SIGTERM) != 0) {
      return Fail(std::generic_category().message(errno));
    }
    stopping_ = state.pid;
    Watch(kStopWatch,
          [&] { return !Query(pid_file, status) || status.current_state != kServiceStopPending; });
    return Query(pid_file, status);
  }

  Handle OpenServiceProcess(std::uint32_t process_id) override {
    PidFileState state;
    std::string problem;
    if (!ProbePidFile(SlpdPidFile(), state, problem)) {
      Fail(problem);
      return nullptr;
    }
    if (!state.held || state.pid != static_cast<pid_t>(process_id)) {
      Fail(std::generic_category().message(ESRCH));
      return nullptr;
    }
    return new ProcessHandle{state.start_seconds};
  }

  void CloseProcess(Handle process) override { delete static_cast<ProcessHandle*>(process); }

  bool CreationTime(Handle process, std::int64_t& seconds) override {
    seconds = static_cast<ProcessHandle*>(process)->start_seconds;
    return true;
  }

  std::string LastErrorText() override {
    return last_error_text.empty() ? "Unknown error." : last_error_text;
  }

 private:
  static const std::string& PidFileOf(Handle service) {
    return static_cast<ManagedHandle*>(service)->pid_file;
  }

  // The caller holds mutex_.
  bool Query(const std::string& pid_file, ServiceStatus& status) {
    PidFileState state;
    std::string problem;
    if (!ProbePidFile(pid_file, state, problem)) {
      return Fail(problem);
    }
    const bool child_runs = child_ && child_->Runs();
    ServiceStatus found;
    if (state.held) {
      // A daemon that is going down empties the file before it lets go of it.
      const bool stops = stopping_ != 0 && (state.pid == stopping_ || state.pid == 0);
      found.process_id = static_cast<std::uint32_t>(state.pid);
      found.current_state = stops            ? kServiceStopPending
                            : state.pid == 0 ? kServiceStartPending
                                             : kServiceRunning;
    } else if (child_runs) {
      // A daemon that goes down lets go of the file a moment before it has ended.
      found.current_state = stopping_ == child_->pid() ? kServiceStopPending : kServiceStartPending;
    } else {
      stopping_ = 0;
      found.current_state = kServiceStopped;
      found.exit_code = child_ ? static_cast<std::uint32_t>(child_->exit_status()) : 0;
    }
    if (found.current_state == kServiceStartPending || found.current_state == kServiceStopPending) {
      found.wait_hint = kPendingWaitHint;
    }
    status = found;
    return true;
  }

  std::mutex mutex_;
  std::optional<ChildProcess> child_;  // the daemon that this process started last
  pid_t stopping_ = 0;                 // the daemon that this process has asked to stop
};

}  // namespace

ServiceManager& SystemServices() {
  static ServiceManager& services = *new ProcessServices;
  return services;
}

}  // namespace kelsd::platform
