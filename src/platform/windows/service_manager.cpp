#include "platform/service_manager.h"

#include <windows.h>

#include <ctime>

#include "platform/windows/system_error.h"

namespace kelsd::platform {
namespace {

constexpr DWORD kStatusSize = 36;
static_assert(sizeof(SERVICE_STATUS_PROCESS) == kStatusSize);

class ServiceControlManager : public ServiceManager {
 public:
  Handle OpenManager(std::uint32_t access) override { return OpenSCManagerA(nullptr, nullptr, access); }

  Handle OpenNamed(Handle manager, const std::string& name, std::uint32_t access) override {
    return OpenServiceA(static_cast<SC_HANDLE>(manager), name.c_str(), access);
  }

  void CloseManaged(Handle handle) override { CloseServiceHandle(static_cast<SC_HANDLE>(handle)); }

  bool QueryStatus(Handle service, ServiceStatus& status) override {
    SERVICE_STATUS_PROCESS record{};
    DWORD needed = 0;
    if (QueryServiceStatusEx(static_cast<SC_HANDLE>(service), SC_STATUS_PROCESS_INFO,
                             reinterpret_cast<BYTE*>(&record), kStatusSize, &needed) == 0) {
      return false;
    }
    status = {record.dwCurrentState, record.dwWin32ExitCode, record.dwCheckPoint, record.dwWaitHint,
              record.dwProcessId};
    return true;
  }

  bool RequestStart(Handle service) override {
    return StartServiceA(static_cast<SC_HANDLE>(service), 0, nullptr) != 0;
  }

  bool RequestStop(Handle service, ServiceStatus& status) override {
    SERVICE_STATUS record{};
    if (ControlService(static_cast<SC_HANDLE>(service), SERVICE_CONTROL_STOP, &record) == 0) {
      return false;
    }
    status.current_state = record.dwCurrentState;
    status.exit_code = record.dwWin32ExitCode;
    status.check_point = record.dwCheckPoint;
    status.wait_hint = record.dwWaitHint;
    return true;
  }

  Handle OpenServiceProcess(std::uint32_t process_id) override {
    return OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process_id);
  }

  void CloseProcess(Handle process) override { CloseHandle(process); }

  bool CreationTime(Handle process, std::int64_t& seconds) override {
    FILETIME creation{};
    FILETIME exit{};
    FILETIME kernel{};
    FILETIME user{};
    SYSTEMTIME time{};
    if (GetProcessTimes(process, &creation, &exit, &kernel, &user) == 0 ||
        FileTimeToSystemTime(&creation, &time) == 0) {
      return false;
    }
    std::tm parts{};
    parts.tm_year = time.wYear - 1900;
    parts.tm_mon = time.wMonth - 1;
    parts.tm_mday = time.wDay;
    parts.tm_hour = time.wHour;
    parts.tm_min = time.wMinute;
    parts.tm_sec = time.wSecond;
    seconds = _mkgmtime64(&parts);
    return true;
  }

  std::string LastErrorText() override { return SystemErrorText(GetLastError()); }
};

}  // namespace

ServiceManager& SystemServices() {
  static ServiceManager& services = *new ServiceControlManager;
  return services;
}

}  // namespace kelsd::platform
