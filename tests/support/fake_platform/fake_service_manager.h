// A service manager that knows one service, "slpd", and plays it as a test says.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/service_manager.h"

namespace kelsd {

/// The calls that can fail.
enum class ServiceCall { kOpenManager, kOpenService, kQuery, kStart, kStop, kOpenProcess, kCreationTime };

/// Without further orders a start makes the service run at once and a stop stops it. Any thread may call it.
class FakeServiceManager : public platform::ServiceManager {
 public:
  explicit FakeServiceManager(platform::Clock& clock) : clock_(clock) { calls_.reserve(kRoomForCalls); }

  Handle OpenManager(std::uint32_t access) override;
  Handle OpenNamed(Handle manager, const std::string& name, std::uint32_t access) override;
  void CloseManaged(Handle handle) override;
  [[nodiscard]] bool QueryStatus(Handle service, platform::ServiceStatus& status) override;
  [[nodiscard]] bool RequestStart(Handle service) override;
  [[nodiscard]] bool RequestStop(Handle service, platform::ServiceStatus& status) override;
  Handle OpenServiceProcess(std::uint32_t process_id) override;
  void CloseProcess(Handle process) override;
  [[nodiscard]] bool CreationTime(Handle process, std::int64_t& seconds) override;
  std::string LastErrorText() override;

  // Orders.

  /// What the service is from now on.
  void SetStatus(const platform::ServiceStatus& status);
  void SetState(platform::ServiceState state) { SetStatus({.current_state = state, .process_id = 7}); }
  platform::ServiceStatus Status();
  /// What the queries see one after the other, after a start, a stop or at once; the last one stays.
  void Upcoming(std::vector<platform::ServiceStatus> statuses);
  void UpcomingAfterStart(std::vector<platform::ServiceStatus> statuses);
  void UpcomingAfterStop(std::vector<platform::ServiceStatus> statuses);
  /// Another program restarts the service now.
  void RestartBehindTheBack();
  /// When the service was started.
  void SetStartTime(std::int64_t seconds);
  /// The calls from the `after`th on fail, `times` of them, and the system says "Refused: CALL.".
  void Fail(ServiceCall call, int times = 1, int after = 0);
  /// Run within a start that succeeds, while no lock of this object is held.
  void OnStart(std::function<void()> hook);

  // What was called.

  /// "OpenSCManager(0x20000)", "OpenService(slpd,0x14)", "Query=1", "StartService", "ControlService",
  /// "OpenProcess(7)", "GetProcessTimes", "CloseService", "CloseManager", "CloseProcess".
  std::vector<std::string> Calls();
  /// Those that begin with `prefix`.
  std::size_t CountCalls(const std::string& prefix);
  void ForgetCalls();
  int OpenHandles();
  /// Handles used that were not open, or of the wrong kind.
  std::vector<std::string> Violations();

 private:
  /// Enough that logging the closing of a handle, in some destructor, needs no memory.
  static constexpr std::size_t kRoomForCalls = 4096;

  enum class Kind { kManager, kService, kProcess };
  struct Failure {
    int after = 0;
    int times = 0;
  };

  // The caller holds mutex_.
  bool Fails(ServiceCall call, const std::string& name);
  Handle Add(Kind kind);
  void Check(Handle handle, Kind kind, const std::string& call);

  platform::Clock& clock_;
  std::mutex mutex_;
  platform::ServiceStatus status_{.current_state = platform::kServiceRunning, .process_id = 7};
  std::int64_t start_time_ = 0;
  std::deque<platform::ServiceStatus> upcoming_;
  std::vector<platform::ServiceStatus> after_start_;
  std::vector<platform::ServiceStatus> after_stop_;
  std::map<ServiceCall, Failure> failures_;
  std::function<void()> on_start_;
  std::map<std::uintptr_t, Kind> handles_;
  std::uintptr_t last_handle_ = 0;
  std::vector<std::string> calls_;
  std::vector<std::string> violations_;
  std::string last_error_;
};

}  // namespace kelsd
