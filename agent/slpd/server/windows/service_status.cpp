#include "slpd/server/windows/service_status.h"

namespace slp {
namespace {

// How long a single step may take, in milliseconds. Steps take a few of them; reading a file from a network
// drive, or a host with very many addresses, is what the rest is for.
constexpr DWORD kStepHint = 10000;
constexpr DWORD kAccepted =
    SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN | SERVICE_ACCEPT_PRESHUTDOWN | SERVICE_ACCEPT_PARAMCHANGE;

}  // namespace

void ServiceStatus::Announce(SERVICE_STATUS_HANDLE handle) {
  const std::lock_guard guard(mutex_);
  handle_ = handle;
  Report();
}

void ServiceStatus::Starting() {
  Pending(SERVICE_START_PENDING, kStepHint);
}

void ServiceStatus::Running() {
  const std::lock_guard guard(mutex_);
  if (HasStopped()) {
    return;
  }
  status_.dwCurrentState = SERVICE_RUNNING;
  status_.dwControlsAccepted = kAccepted;
  status_.dwCheckPoint = 0;
  status_.dwWaitHint = 0;
  Report();
}

void ServiceStatus::Stopping() {
  Pending(SERVICE_STOP_PENDING, kStepHint);
}

// Steps:
// 1. With the lock, note the end: reports that are under way have been made, and none follows.
// 2. Without it, as the last thing and from copies, report it.
void ServiceStatus::Stopped(std::uint32_t failure) {
  SERVICE_STATUS_HANDLE handle = nullptr;
  SERVICE_STATUS status{};
  {
    const std::lock_guard guard(mutex_);
    status_.dwCurrentState = SERVICE_STOPPED;
    status_.dwControlsAccepted = 0;
    status_.dwCheckPoint = 0;
    status_.dwWaitHint = 0;
    status_.dwWin32ExitCode = failure == 0 ? NO_ERROR : ERROR_SERVICE_SPECIFIC_ERROR;
    status_.dwServiceSpecificExitCode = failure;
    handle = handle_;
    status = status_;
  }
  if (handle != nullptr) {
    SetServiceStatus(handle, &status);
  }
}

void ServiceStatus::Pending(DWORD state, DWORD wait_hint) {
  const std::lock_guard guard(mutex_);
  if (HasStopped()) {
    return;
  }
  status_.dwCheckPoint = status_.dwCurrentState == state ? status_.dwCheckPoint + 1 : 1;
  status_.dwCurrentState = state;
  // Nothing can be asked of it until it runs, nor any more when it ends.
  status_.dwControlsAccepted = 0;
  status_.dwWaitHint = wait_hint;
  Report();
}

void ServiceStatus::Report() {
  if (handle_ != nullptr) {
    SetServiceStatus(handle_, &status_);
  }
}

}  // namespace slp
