#include "slpd/server/windows/service_installation.h"

#include <windows.h>

#include <memory>

#include "slpd/server/windows/event_log.h"
#include "slpd/server/windows/service_command.h"
#include "slpd/server/windows/service_name.h"
#include "slpd/server/windows/system_text.h"

namespace slp {
namespace {

constexpr char kDisplayName[] = "SLP daemon (slpd)";
constexpr char kDescription[] =
    "Announces the services of this host by the Service Location Protocol, and answers those who look for "
    "them.";
// No right that the daemon needs goes beyond its: ports below 1024 are open to everybody on Windows.
constexpr char kAccount[] = "NT AUTHORITY\\LocalService";
constexpr DWORD kStopLimit = 30000;
constexpr DWORD kStopPause = 100;

struct CloseManaged {
  void operator()(SC_HANDLE handle) const { CloseServiceHandle(handle); }
};
using ServiceHandle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, CloseManaged>;

struct AdviceRow {
  DWORD code;
  const char* advice;
};

constexpr AdviceRow kAdvice[] = {
    {ERROR_ACCESS_DENIED, "that takes an administrator: open the console with \"Run as administrator\""},
    {ERROR_SERVICE_EXISTS,
     "there is a service slpd already: keep it, or remove it first, by slpd uninstall or (when it is another "
     "program's) sc delete slpd"},
    {ERROR_DUPLICATE_SERVICE_NAME,
     "another service has this name for its display: remove that one, or rename it, in services.msc"},
    {ERROR_SERVICE_MARKED_FOR_DELETE,
     "the service slpd is about to be deleted, but something has it open: close services.msc and the like, "
     "or "
     "restart Windows, and try again"},
    {ERROR_SERVICE_DOES_NOT_EXIST, "there is no service slpd, so there is nothing to remove"},
    {ERROR_INVALID_SERVICE_ACCOUNT,
     "the account NT AUTHORITY\\LocalService does not exist on this system, which slpd runs under"},
    {RPC_S_SERVER_UNAVAILABLE, "the service manager of this system does not run"},
};

// `code` is that of the call that has failed.
std::string Problem(const std::string& what, DWORD code) {
  for (const AdviceRow& row : kAdvice) {
    if (row.code == code) {
      return what + ": " + row.advice + " (" + std::to_string(code) + ")";
    }
  }
  return what + ": " + SystemText(code);
}

// A manual start would do for the library, which starts the daemon itself; it starts with the system because
// the registration file announces services that no application of the library stands for.
//
// Nothing is said about restarting it after a failure: the library's watchdog starts a daemon that has died
// within one check interval, and registers its services again. Were the service manager at it too, the
// watchdog would find the service starting, which counts as a failed renewal of every service.
//
// It depends on no other service: networks that come up later are followed.
ServiceHandle CreateIn(SC_HANDLE manager, const std::string& command) {
  return ServiceHandle(CreateServiceA(manager, kServiceName, kDisplayName, SERVICE_CHANGE_CONFIG,
                                      SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                                      command.c_str(), nullptr, nullptr, nullptr, kAccount, nullptr));
}

bool StopAndWait(SC_HANDLE service) {
  SERVICE_STATUS status{};
  if (ControlService(service, SERVICE_CONTROL_STOP, &status) == 0 &&
      GetLastError() == ERROR_SERVICE_NOT_ACTIVE) {
    return true;
  }
  for (DWORD waited = 0; waited < kStopLimit; waited += kStopPause) {
    if (QueryServiceStatus(service, &status) != 0 && status.dwCurrentState == SERVICE_STOPPED) {
      return true;
    }
    Sleep(kStopPause);
  }
  return false;
}

}  // namespace

bool InstallService(const CommandLine& command_line, std::string& note, std::string& problem) {
  const ServiceHandle manager(
      OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE));
  if (!manager) {
    problem = Problem("cannot install the service", GetLastError());
    return false;
  }
  const std::string command = JoinArguments(ServiceArguments(OwnProgram(), command_line));
  const ServiceHandle service = CreateIn(manager.get(), command);
  if (!service) {
    problem = Problem("cannot install the service", GetLastError());
    return false;
  }
  std::string description = kDescription;
  SERVICE_DESCRIPTIONA record{description.data()};
  ChangeServiceConfig2A(service.get(), SERVICE_CONFIG_DESCRIPTION, &record);
  note = "installed the service slpd, account " + std::string(kAccount) + ": " + command;
  if (!AddEventSource()) {
    note += "\nits event source could not be entered: the event viewer shows its texts with a remark";
  }
  return true;
}

bool UninstallService(std::string& problem) {
  const ServiceHandle manager(OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT));
  const ServiceHandle service(
      manager ? OpenServiceA(manager.get(), kServiceName, DELETE | SERVICE_STOP | SERVICE_QUERY_STATUS)
              : nullptr);
  if (!service) {
    problem = Problem("cannot uninstall the service", GetLastError());
    return false;
  }
  if (!StopAndWait(service.get())) {
    problem =
        "cannot uninstall the service: it does not stop; end its process in the Task Manager and try again";
    return false;
  }
  if (DeleteService(service.get()) == 0) {
    problem = Problem("cannot uninstall the service", GetLastError());
    return false;
  }
  RemoveEventSource();
  return true;
}

}  // namespace slp
