// Asking the system about the daemon, and waiting for it.
#include <algorithm>

#include "service/service_impl.h"

namespace kelsd {

namespace {

constexpr const char* kServiceName = "slpd";

constexpr std::uint32_t kShortestPause = 1000;
constexpr std::uint32_t kLongestPause = 5000;
constexpr std::uint32_t kTimeoutWithoutHint = 1000;

}  // namespace

SResult CKelSLPServiceImpl::OpenServiceHandles(ServiceHandles& handles, std::uint32_t serviceAccess) {
  platform::ServiceManager& services = m_platform.services;
  handles.manager = services.OpenManager(platform::service_access::kManagerReadControl);
  if (handles.manager == nullptr) {
    return {SResult::ERR_SCM_ACCESS, services.LastErrorText(),
            "kelsd::CKelSLPServiceImpl::OpenServiceHandles OpenSCManager"};
  }
  handles.service = services.OpenNamed(handles.manager, kServiceName, serviceAccess);
  if (handles.service == nullptr) {
    return {SResult::ERR_SLPD_OPEN, services.LastErrorText(),
            "kelsd::CKelSLPServiceImpl::OpenServiceHandles OpenService"};
  }
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPServiceImpl::GetServiceStatus(platform::ServiceStatus& status,
                                             platform::ServiceManager::Handle service) {
  if (!m_platform.services.QueryStatus(service, status)) {
    return {SResult::ERR_SLPD_QUERY, m_platform.services.LastErrorText(),
            "kelsd::CKelSLPServiceImpl::GetServiceStatus QueryServiceStatusEx"};
  }
  return {SResult::ERR_SUCCESS};
}

// 1. Query; the time without progress begins.
// 2. While the service stays in the state: pause for a tenth of its wait hint, within limits, and query
// again.
// 3. A check point that went on is progress: the time begins anew.
// 4. Without progress the service has as long as its hint says.
SResult CKelSLPServiceImpl::WaitForServiceStatusChange(platform::ServiceStatus& status,
                                                       platform::ServiceState state,
                                                       platform::ServiceManager::Handle service) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::WaitForServiceStatusChange";
  platform::Clock& clock = m_platform.clock;
  if (const SResult result = GetServiceStatus(status, service); result.IsNotOk()) {
    return result.PrependErrorDebug(kName, " ");
  }
  std::uint32_t start = clock.TickCount();
  std::uint32_t last_check_point = status.check_point;
  while (status.current_state == state) {
    clock.Sleep(std::clamp(status.wait_hint / 10, kShortestPause, kLongestPause));
    if (const SResult result = GetServiceStatus(status, service); result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (status.check_point > last_check_point) {
      start = clock.TickCount();
      last_check_point = status.check_point;
      continue;
    }
    const std::uint32_t timeout = status.wait_hint == 0 ? kTimeoutWithoutHint : status.wait_hint;
    // The tick count wraps round; the difference doesn't mind.
    if (clock.TickCount() - start > timeout && status.current_state == state) {
      return {SResult::ERR_SLPD_WAIT_TIMEOUT, "", kName};
    }
  }
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPServiceImpl::GetSLPDStartTimestamp(std::int64_t& startTime) {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::GetSLPDStartTimestamp";
  return InvokeNoThrow([&]() -> SResult {
    platform::ServiceManager& services = m_platform.services;
    ServiceHandles handles(services);
    platform::ServiceStatus status;
    if (const SResult result = OpenServiceHandles(handles, platform::service_access::kQueryStatus);
        result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (const SResult result = GetServiceStatus(status, handles.service); result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (status.current_state != platform::kServiceRunning) {
      return {SResult::ERR_SLPD_PROCESS_OPEN, "SLPD not running.", kName};
    }
    const platform::ServiceManager::Handle process = services.OpenServiceProcess(status.process_id);
    if (process == nullptr) {
      return {SResult::ERR_SLPD_PROCESS_OPEN, services.LastErrorText(), std::string(kName) + " OpenProcess"};
    }
    const ProcessHandleGuard guard(services, process);
    std::int64_t created = 0;
    if (!services.CreationTime(process, created)) {
      return {SResult::ERR_SLPD_PROCESS_OPEN, services.LastErrorText(),
              std::string(kName) + " GetProcessTimes"};
    }
    startTime = created;
    return {SResult::ERR_SUCCESS};
  });
}

}  // namespace kelsd
