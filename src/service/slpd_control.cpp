// Starting and stopping the daemon.
#include <mutex>

#include "foundation/conversions.h"
#include "service/service_impl.h"

namespace kelsd {

namespace {

namespace access = platform::service_access;

std::string DidNotStart(const platform::ServiceStatus& status) {
  const auto number = [](std::uint32_t value) { return Stringify<std::uint64_t>(value); };
  return "Service did not start up. Current State: " + number(status.current_state) +
         ". Exit Code: " + number(status.exit_code) + ". Check Point: " + number(status.check_point) +
         ". Wait Hint: " + number(status.wait_hint) + ".";
}

}  // namespace

SResult CKelSLPServiceImpl::StartSLPD() {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::StartSLPD", [&] {
    const std::lock_guard hold(m_serviceLock);
    return StartBody();
  });
}

SResult CKelSLPServiceImpl::StopSLPD() {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::StopSLPD", [&] {
    const std::lock_guard hold(m_serviceLock);
    return StopBody();
  });
}

SResult CKelSLPServiceImpl::RestartSLPD() {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::RestartSLPD", [&] {
    const std::lock_guard hold(m_serviceLock);
    SResult stopped = StopSLPD();
    return stopped.IsOk() ? StartSLPD() : stopped;
  });
}

SResult CKelSLPServiceImpl::IsSLPDRunning(bool& running) {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::IsSLPDRunning", [&] {
    const std::lock_guard hold(m_serviceLock);
    ServiceHandles handles(m_platform.services);
    if (SResult result = OpenServiceHandles(handles, access::kQueryStatus); result.IsNotOk()) {
      return result;
    }
    platform::ServiceStatus status;
    SResult result = GetServiceStatus(status, handles.service);
    if (result.IsOk()) {
      running = status.current_state == platform::kServiceRunning;
    }
    return result;
  });
}

SResult CKelSLPServiceImpl::EnsureSLPDIsRunning() {
  constexpr const char* kName = "kelsd::CKelSLPServiceImpl::EnsureSLPDIsRunning";
  return InvokeNoThrow([&]() -> SResult {
    const std::lock_guard hold(m_serviceLock);
    bool running = false;
    if (const SResult result = IsSLPDRunning(running); result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (running) {
      return {SResult::ERR_SUCCESS};
    }
    if (const SResult result = StartSLPD(); result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (const SResult result = IsSLPDRunning(running); result.IsNotOk()) {
      return result.PrependErrorDebug(kName, " ");
    }
    if (!running) {
      return {SResult::ERR_SLPD_START, "", std::string(kName) + " StartSLPD"};
    }
    return {SResult::ERR_SUCCESS};
  });
}

// 1. to 3. Only a service that is stopped, or about to be, can be started.
// 4. Wait until it has stopped.
// 5. Start it.
// 6. Wait until it has started; one that came up late counts as started.
// 7. It must run now.
// 8. The daemon that has just started knows nothing of the registered services: renew them all at once.
SResult CKelSLPServiceImpl::StartBody() {
  ServiceHandles handles(m_platform.services);
  if (SResult result = OpenServiceHandles(handles, access::kQueryStatus | access::kStart); result.IsNotOk()) {
    return result;
  }
  platform::ServiceStatus status;
  if (SResult result = GetServiceStatus(status, handles.service); result.IsNotOk()) {
    return result;
  }
  if (status.current_state != platform::kServiceStopped &&
      status.current_state != platform::kServiceStopPending) {
    return {SResult::ERR_SLPD_ALREADY_RUNNING};
  }
  if (SResult result = WaitForServiceStatusChange(status, platform::kServiceStopPending, handles.service);
      result.IsNotOk()) {
    return result;
  }
  if (!m_platform.services.RequestStart(handles.service)) {
    return {SResult::ERR_SLPD_START, m_platform.services.LastErrorText(), "StartService"};
  }
  SResult waited = WaitForServiceStatusChange(status, platform::kServiceStartPending, handles.service);
  if (waited == SResult::ERR_SLPD_WAIT_TIMEOUT) {
    waited = GetServiceStatus(status, handles.service);
  }
  if (waited.IsNotOk()) {
    return waited;
  }
  if (status.current_state != platform::kServiceRunning) {
    return {SResult::ERR_SLPD_START, DidNotStart(status)};
  }
  CheckRegistrations(true);
  return {SResult::ERR_SUCCESS};
}

// 1. and 2. Wait until a stop that is under way has ended.
// 3. A service that has stopped is stopped.
// 4. Stop it.
// 5. Wait until it has stopped.
// 6. It must have stopped now.
SResult CKelSLPServiceImpl::StopBody() {
  ServiceHandles handles(m_platform.services);
  if (SResult result = OpenServiceHandles(handles, access::kQueryStatus | access::kStop); result.IsNotOk()) {
    return result;
  }
  platform::ServiceStatus status;
  if (SResult result = GetServiceStatus(status, handles.service); result.IsNotOk()) {
    return result;
  }
  if (SResult result = WaitForServiceStatusChange(status, platform::kServiceStopPending, handles.service);
      result.IsNotOk()) {
    return result;
  }
  if (status.current_state == platform::kServiceStopped) {
    return {SResult::ERR_SUCCESS};
  }
  if (!m_platform.services.RequestStop(handles.service, status)) {
    return {SResult::ERR_SLPD_STOP, m_platform.services.LastErrorText(), "ControlService"};
  }
  if (SResult result = WaitForServiceStatusChange(status, platform::kServiceStopPending, handles.service);
      result.IsNotOk()) {
    return result;
  }
  if (SResult result = GetServiceStatus(status, handles.service); result.IsNotOk()) {
    return result;
  }
  if (status.current_state != platform::kServiceStopped) {
    return {SResult::ERR_SLPD_STOP};
  }
  return {SResult::ERR_SUCCESS};
}

}  // namespace kelsd
