#include "support/host_daemon/windows/slpd_service.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

#include "platform/windows/system_error.h"

namespace kelsd::support {
namespace {

constexpr char kName[] = "slpd";
constexpr std::chrono::seconds kLimit{20};
constexpr std::chrono::milliseconds kManagerLimit{50};
// Nothing tells when the manager has done something; a short pause between two looks is all there is.
constexpr std::chrono::milliseconds kPause{10};

struct Close {
  void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, Close>;

[[noreturn]] void Fail(const std::string& what) {
  const DWORD code = GetLastError();
  throw std::runtime_error(what + ": " + SystemMessage(code));
}

Handle OpenManager() {
  Handle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
  if (!manager) {
    Fail("the service control manager");
  }
  return manager;
}

// None when there is no such service.
Handle FindSlpd() {
  return Handle(OpenServiceA(OpenManager().get(), kName, SERVICE_ALL_ACCESS));
}

Handle OpenSlpd() {
  Handle service = FindSlpd();
  if (!service) {
    Fail("the service slpd");
  }
  return service;
}

SERVICE_STATUS_PROCESS StatusOf(SC_HANDLE service) {
  SERVICE_STATUS_PROCESS status{};
  DWORD needed = 0;
  if (QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof(status),
                           &needed) == 0) {
    Fail("the status of the service slpd");
  }
  return status;
}

bool WaitUntil(std::chrono::milliseconds limit, const std::function<bool()>& done) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!done()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

bool Stopped(SC_HANDLE service) {
  return StatusOf(service).dwCurrentState == SERVICE_STOPPED;
}

// Windows sees at once that a service's process has gone. Wine sees it only when it is to start the service
// again: it is told what Windows would have seen, over the handle by which a service tells its own state.
void TellOfEnd() {
  constexpr DWORD kSetStatus = 0x8000;
  if (const Handle service{OpenServiceA(OpenManager().get(), kName, kSetStatus)}) {
    SERVICE_STATUS ended{SERVICE_WIN32_OWN_PROCESS, SERVICE_STOPPED, 0, ERROR_PROCESS_ABORTED, 0, 0, 0};
    SetServiceStatus(reinterpret_cast<SERVICE_STATUS_HANDLE>(service.get()), &ended);
  }
}

void EndProcessOf(SC_HANDLE service) {
  const DWORD process_id = StatusOf(service).dwProcessId;
  if (process_id == 0) {
    return;
  }
  if (const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, process_id)) {
    TerminateProcess(process, 1);
    WaitForSingleObject(process, INFINITE);
    CloseHandle(process);
  }
  if (!WaitUntil(kManagerLimit, [&] { return Stopped(service); })) {
    TellOfEnd();
  }
}

}  // namespace

void CreateSlpdService(const std::string& command_line) {
  const Handle service(CreateServiceA(OpenManager().get(), kName, nullptr, SERVICE_ALL_ACCESS,
                                      SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                      command_line.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
  if (!service) {
    Fail("creating the service slpd");
  }
}

void RemoveSlpdService() {
  if (Handle service = FindSlpd()) {
    EndProcessOf(service.get());
    WaitUntil(kLimit, [&] { return Stopped(service.get()); });
    if (DeleteService(service.get()) == 0) {
      Fail("deleting the service slpd");
    }
    service.reset();
    if (!WaitUntil(kLimit, [] { return FindSlpd() == nullptr; })) {
      throw std::runtime_error("the service slpd is still there after its deletion");
    }
  }
}

SERVICE_STATUS_PROCESS SlpdServiceStatus() {
  return StatusOf(OpenSlpd().get());
}

void StartSlpdService() {
  if (StartServiceA(OpenSlpd().get(), 0, nullptr) == 0) {
    Fail("starting the service slpd");
  }
}

bool ControlSlpdService(DWORD control) {
  SERVICE_STATUS status{};
  const Handle service = OpenSlpd();
  return ControlService(service.get(), control, &status) != 0;
}

void TerminateSlpdService() {
  EndProcessOf(OpenSlpd().get());
}

std::string SystemMessage(DWORD code) {
  return platform::SystemErrorText(code);
}

}  // namespace kelsd::support
