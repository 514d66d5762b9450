// The operating system's services and their processes, as far as controlling one service takes them. Handed
// in, so that tests play a service through every state.
#pragma once

#include <cstdint>
#include <string>

namespace kelsd::platform {

/// Access rights; the numbers are the service control manager's.
namespace service_access {
inline constexpr std::uint32_t kManagerReadControl = 0x20000;
inline constexpr std::uint32_t kQueryStatus = 0x4;
inline constexpr std::uint32_t kStart = 0x10;
inline constexpr std::uint32_t kStop = 0x20;
}  // namespace service_access

/// States of a service; the numbers are the service control manager's. Others may come.
enum ServiceState : std::uint32_t {
  kServiceStopped = 1,
  kServiceStartPending = 2,
  kServiceStopPending = 3,
  kServiceRunning = 4,
};

struct ServiceStatus {
  std::uint32_t current_state = kServiceStopped;
  std::uint32_t exit_code = 0;
  std::uint32_t check_point = 0;
  std::uint32_t wait_hint = 0;  ///< milliseconds
  std::uint32_t process_id = 0;

  bool operator==(const ServiceStatus&) const = default;
};

/// Any thread may call it. Handles are opaque, null stands for a failure, and each is closed once by its
/// owner. After a failure LastErrorText tells, on the same thread, what the system says about it.
class ServiceManager {
 public:
  using Handle = void*;

  ServiceManager() = default;
  ServiceManager(const ServiceManager&) = delete;
  ServiceManager& operator=(const ServiceManager&) = delete;
  virtual ~ServiceManager() = default;

  virtual Handle OpenManager(std::uint32_t access) = 0;
  virtual Handle OpenNamed(Handle manager, const std::string& name, std::uint32_t access) = 0;
  /// Closes a handle of either kind above.
  virtual void CloseManaged(Handle handle) = 0;

  [[nodiscard]] virtual bool QueryStatus(Handle service, ServiceStatus& status) = 0;
  /// Asks for the start; the service may still be starting when this returns.
  [[nodiscard]] virtual bool RequestStart(Handle service) = 0;
  /// Asks for the stop; the service may still be stopping when this returns.
  [[nodiscard]] virtual bool RequestStop(Handle service, ServiceStatus& status) = 0;

  virtual Handle OpenServiceProcess(std::uint32_t process_id) = 0;
  virtual void CloseProcess(Handle process) = 0;
  /// When the process was created, in whole seconds since 1970-01-01 UTC.
  [[nodiscard]] virtual bool CreationTime(Handle process, std::int64_t& seconds) = 0;

  /// What the system says about the last failure on this thread; "Unknown error." when it says nothing.
  virtual std::string LastErrorText() = 0;
};

/// This system's services; never destroyed.
ServiceManager& SystemServices();

}  // namespace kelsd::platform
