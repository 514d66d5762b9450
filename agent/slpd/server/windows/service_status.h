// The state of the service as the service manager is told it. Any thread may call it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <mutex>

namespace slp {

/// While the service starts or stops, every step counts the check point up: a service whose check point
/// stands still for longer than its wait hint counts as hung.
class ServiceStatus {
 public:
  /// From here on the manager hears of every change; what came before it hears at once.
  void Announce(SERVICE_STATUS_HANDLE handle);

  void Starting();  ///< a step of the start
  void Running();
  void Stopping();  ///< a step of the stop
  /// `failure` 0: ended as asked. Else the service's own code for what went wrong. The last that the manager
  /// hears: what is called later, or at the same moment by another thread, tells it nothing. Once it has
  /// heard, the main thread goes on to end the process, and this object may be gone before the call returns.
  void Stopped(std::uint32_t failure);

 private:
  void Pending(DWORD state, DWORD wait_hint);
  void Report();
  bool HasStopped() const { return status_.dwCurrentState == SERVICE_STOPPED; }

  std::mutex mutex_;
  SERVICE_STATUS_HANDLE handle_ = nullptr;
  SERVICE_STATUS status_{SERVICE_WIN32_OWN_PROCESS, SERVICE_START_PENDING, 0, NO_ERROR, 0, 0, 0};
};

}  // namespace slp
