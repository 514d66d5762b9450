// The entry of the service: the service manager calls ServiceMain on a thread of its own, on which the daemon
// runs, and ControlHandler on the main thread, which only passes orders on.
#include "slpd/server/service.h"

#include <windows.h>

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <iostream>
#include <mutex>
#include <utility>

#include "slpd/server/daemon.h"
#include "slpd/server/foreground.h"
#include "slpd/server/supervisor.h"
#include "slpd/server/windows/event_log.h"
#include "slpd/server/windows/service_installation.h"
#include "slpd/server/windows/service_name.h"
#include "slpd/server/windows/service_status.h"
#include "slpd/server/windows/system_text.h"

namespace slp {
namespace {

class Service : private Supervisor {
 public:
  explicit Service(const CommandLine& command_line) : command_line_(command_line) {}

  // Steps:
  // 1. Take controls, and say at once that the service starts: the manager waits for that.
  // 2. Run the daemon; its steps are the check points.
  // 3. Say how it ended. After that the process may be ended, and this object be gone.
  void Main() {
    const SERVICE_STATUS_HANDLE handle = RegisterServiceCtrlHandlerExA(kServiceName, &ControlHandler, this);
    if (handle == nullptr) {
      OnFailure("cannot take controls of the service manager: " + SystemText(GetLastError()));
      exit_status_ = ExitStatus::kFailed;
      return;
    }
    status_.Announce(handle);
    try {
      exit_status_ = Daemon(command_line_, io_, *this).Run();
    } catch (const std::exception& error) {
      OnFailure(error.what());
      exit_status_ = ExitStatus::kFailed;
    }
    status_.Stopped(static_cast<std::uint32_t>(exit_status_));
  }

  ExitStatus exit_status() const { return exit_status_; }

 private:
  static DWORD WINAPI ControlHandler(DWORD control, DWORD, void*, void* service) {
    return static_cast<Service*>(service)->OnControl(control);
  }

  DWORD OnControl(DWORD control) {
    switch (control) {
      case SERVICE_CONTROL_STOP:
      case SERVICE_CONTROL_SHUTDOWN:
      case SERVICE_CONTROL_PRESHUTDOWN:
        status_.Stopping();
        Pass(&Orders::stop);
        return NO_ERROR;
      case SERVICE_CONTROL_PARAMCHANGE:
        Pass(&Orders::reload);
        return NO_ERROR;
      case SERVICE_CONTROL_INTERROGATE:
        return NO_ERROR;
      default:
        return ERROR_CALL_NOT_IMPLEMENTED;
    }
  }

  void Pass(std::function<void()> Orders::*order) {
    const std::lock_guard guard(mutex_);
    if (orders_.*order) {
      asio::post(io_, orders_.*order);
    }
  }

  void Follow(Orders orders) override {
    const std::lock_guard guard(mutex_);
    orders_ = std::move(orders);
  }
  void OnProgress() override { status_.Starting(); }
  void OnServing() override { status_.Running(); }
  void OnEnding() override { status_.Stopping(); }
  void OnFailure(const std::string& reason) override { events_.Error("slpd: " + reason); }
  void OnProblem(std::string_view text) override { events_.Warning(std::string(text)); }

  const CommandLine& command_line_;
  const EventLog events_;
  ServiceStatus status_;
  asio::io_context io_{1};
  std::mutex mutex_;
  Orders orders_;
  ExitStatus exit_status_ = ExitStatus::kOk;
};

// ServiceMain is given nothing by which to find it.
Service* service_of_process = nullptr;

void WINAPI ServiceMain(DWORD, char**) {
  service_of_process->Main();
}

ExitStatus Run(const CommandLine& command_line) {
  Service service(command_line);
  service_of_process = &service;
  char name[] = {'s', 'l', 'p', 'd', '\0'};
  const SERVICE_TABLE_ENTRYA table[] = {{name, &ServiceMain}, {nullptr, nullptr}};
  if (StartServiceCtrlDispatcherA(table) != 0) {
    return service.exit_status();
  }
  if (GetLastError() != ERROR_FAILED_SERVICE_CONTROLLER_CONNECT) {
    std::cerr << "slpd: cannot reach the service manager: " << SystemText(GetLastError()) << std::endl;
    return ExitStatus::kFailed;
  }
  std::cerr
      << "slpd: not started by the service manager (kelsd slpd start asks it to); runs in the foreground, "
         "Ctrl+C ends it"
      << std::endl;
  return RunInForeground(command_line);
}

}  // namespace

ExitStatus PerformServiceVerb(const CommandLine& command_line) {
  if (command_line.verb == Verb::kRun) {
    return Run(command_line);
  }
  std::string note = "removed the service slpd";
  std::string problem;
  const bool done = command_line.verb == Verb::kInstall ? InstallService(command_line, note, problem)
                                                        : UninstallService(problem);
  if (!done) {
    std::cerr << "slpd: " << problem << std::endl;
    return ExitStatus::kFailed;
  }
  std::cout << "slpd: " << note << std::endl;
  return ExitStatus::kOk;
}

}  // namespace slp
