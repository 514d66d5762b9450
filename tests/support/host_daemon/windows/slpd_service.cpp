#include "support/host_daemon/windows/slpd_service.h"

#include <chrono>
#include <memory>
#include <stdexcept>

#include "platform/windows/system_error.h"
#include "support/wait_until.h"

namespace kelsd::support {
namespace {

constexpr char kName[] = "slpd";
constexpr std::chrono::seconds kLimit{20};
constexpr std::chrono::milliseconds kManagerLimit{50};

struct Close {
  void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, Close>;

[[noreturn]] void Fail(const std::string& what) {
  const DWORD code = GetLastError();
  throw std::runtime_error(what + ": " + SystemMessage(code));
}

// Open as long as the process runs. Wine ends a process's connection to its service control manager with the
// last handle: where one thread closes that while another opens its first, handles become invalid, or are
// never closed and keep the service there after its deletion.
SC_HANDLE Manager() {
  static const Handle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
  if (!manager) {
    Fail("the service control manager");
  }
  return manager.get();
}

// None when there is no such service.
Handle FindSlpd() {
  return Handle(OpenServiceA(Manager(), kName, SERVICE_ALL_ACCESS));
}

Handle OpenSlpd() {
  Handle service = FindSlpd();
  if (!service) {
    Fail("the service slpd");
  }
  return service;
}

bool Stopped() {
  return SlpdServiceStatus().dwCurrentState == SERVICE_STOPPED;
}

// Windows sees at once that a service's process has gone. Wine sees it only when it is to start the service
// again: it is told what Windows would have seen, over the handle by which a service tells its own state.
void TellOfEnd() {
  constexpr DWORD kSetStatus = 0x8000;
  if (const Handle service{OpenServiceA(Manager(), kName, kSetStatus)}) {
    SERVICE_STATUS ended{SERVICE_WIN32_OWN_PROCESS, SERVICE_STOPPED, 0, ERROR_PROCESS_ABORTED, 0, 0, 0};
    SetServiceStatus(reinterpret_cast<SERVICE_STATUS_HANDLE>(service.get()), &ended);
  }
}

}  // namespace

void CreateSlpdService(const std::string& command_line) {
  const Handle service(CreateServiceA(Manager(), kName, nullptr, SERVICE_ALL_ACCESS,
                                      SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                      command_line.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
  if (!service) {
    Fail("creating the service slpd");
  }
}

void RemoveSlpdService() {
  if (Handle service = FindSlpd()) {
    TerminateSlpdService();
    WaitUntil(Stopped, kLimit);
    if (DeleteService(service.get()) == 0) {
      Fail("deleting the service slpd");
    }
    service.reset();
    if (!WaitUntil([] { return FindSlpd() == nullptr; }, kLimit)) {
      throw std::runtime_error("the service slpd is still there after its deletion");
    }
  }
}

SERVICE_STATUS_PROCESS SlpdServiceStatus() {
  const Handle service = OpenSlpd();
  SERVICE_STATUS_PROCESS status{};
  DWORD needed = 0;
  if (QueryServiceStatusEx(service.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                           sizeof(status), &needed) == 0) {
    Fail("the status of the service slpd");
  }
  return status;
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
  const SERVICE_STATUS_PROCESS before = SlpdServiceStatus();
  if (before.dwProcessId == 0) {
    return;
  }
  if (const HANDLE process = OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, before.dwProcessId)) {
    TerminateProcess(process, 1);
    WaitForSingleObject(process, INFINITE);
    CloseHandle(process);
  }
  // Who watches the service may have started it again by now: of that process nothing may be told.
  const auto has_changed = [&] {
    const SERVICE_STATUS_PROCESS now = SlpdServiceStatus();
    return now.dwProcessId != before.dwProcessId || now.dwCurrentState != before.dwCurrentState;
  };
  if (!WaitUntil(has_changed, kManagerLimit)) {
    TellOfEnd();
  }
}

std::string SystemMessage(DWORD code) {
  return platform::SystemErrorText(code);
}

}  // namespace kelsd::support
