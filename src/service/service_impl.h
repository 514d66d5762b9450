// The service agent behind the facade CKelSLPService: registrations and their renewal, control of the local
// daemon "slpd", and its configuration file.
//
// Any thread may call it. Locks are always taken in this order: m_serviceLock, then the core lock, then the
// small ones that nothing else is taken under.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/SResult.h"
#include "platform/clock.h"
#include "platform/known_folders.h"
#include "platform/periodic_timer.h"
#include "platform/recursive_lock.h"
#include "platform/service_manager.h"
#include "service/dropped_services.h"
#include "service/reporting_lock.h"
#include "service/service_handles.h"
#include "slp/slp_impl.h"

namespace kelsd {

/// A service that this process keeps registered; all but the last two members are as the application gave
/// them.
struct SRegisteredService {
  std::string URL;
  unsigned short Lifetime = 0;  ///< seconds
  std::map<std::string, std::string> Attributes;
  std::vector<std::string> Scopes;
  std::int64_t LastRegistration = 0;        ///< of the last success, in whole seconds since 1970-01-01 UTC
  std::uint32_t FailedReRegistrations = 0;  ///< since the last success

  bool operator==(const SRegisteredService&) const = default;
};

/// What the service agent needs of the operating system. All of it outlives the agent.
struct ServicePlatform {
  platform::ServiceManager& services;
  platform::Clock& clock;
  platform::TimerFactory& timers;
  platform::KnownFolders& folders;
};

/// All operations return a result and never throw; outputs are written only on success. Operations that need
/// the daemon block while it starts or stops.
class CKelSLPServiceImpl : public CKelSLPImpl {
 public:
  /// The one of the process, on the system's own means; never destroyed.
  static CKelSLPServiceImpl& Instance();

  explicit CKelSLPServiceImpl(const ServicePlatform& platform);
  ~CKelSLPServiceImpl() override;
  CKelSLPServiceImpl(const CKelSLPServiceImpl&) = delete;
  CKelSLPServiceImpl& operator=(const CKelSLPServiceImpl&) = delete;

  // Registration.

  /// Registers a service and keeps it registered until DeregisterService. Adds scopes that the daemon doesn't
  /// serve yet to its configuration and restarts it then.
  [[nodiscard]] SResult RegisterService(const std::string& url, unsigned short lifetime,
                                        const std::map<std::string, std::string>& attributes,
                                        const std::vector<std::string>& scopes);
  /// Registers a service once more, without a change of the configuration or of what is kept registered.
  [[nodiscard]] SResult ReRegisterService(const std::string& url, unsigned short lifetime,
                                          const std::map<std::string, std::string>& attributes,
                                          const std::vector<std::string>& scopes);
  /// The service is no longer kept registered, also when this fails after the URL was found to be one.
  [[nodiscard]] SResult DeregisterService(const std::string& url);
  /// What is kept registered now, by URL.
  std::map<std::string, SRegisteredService> GetRegisteredServices();

  // Renewal.

  [[nodiscard]] SResult SetRegistrationCheckInterval(int intervalMs);
  void SetReRegistrationFailedCallback(std::function<void(std::string, SResult)> callback);
  /// One pass over the registered services: renews those that are due, or with `force` all of them. What it
  /// gave up is reported when m_serviceLock is left, by a forced pass, or else only queued: the timer
  /// delivers it after its tick. Does nothing while another thread holds m_serviceLock or a registration is
  /// under way.
  void CheckRegistrations(bool force);

  // Control of the daemon.

  [[nodiscard]] SResult StartSLPD();
  [[nodiscard]] SResult StopSLPD();
  [[nodiscard]] SResult RestartSLPD();
  [[nodiscard]] SResult IsSLPDRunning(bool& running);
  [[nodiscard]] SResult EnsureSLPDIsRunning();
  /// When the daemon's process was created, in whole seconds since 1970-01-01 UTC. Takes no lock.
  [[nodiscard]] SResult GetSLPDStartTimestamp(std::int64_t& startTime);

  // Location of the configuration file. The caller holds the core lock or relies on the SLP library alone.

  static std::string GetOpenSLPConfigVariable(bool& found);
  std::string GetDefaultEnvConfigFileName();
  /// The main configuration file.
  std::string GetSLPConfigFileName();
  /// The file that the environment variable "OpenSLPConfig" names.
  [[nodiscard]] SResult GetSLPEnvConfigFileName(std::string& fileName);
  /// Creates this file, empty, with its folders when it doesn't exist: the part of the following validation
  /// that reads no properties, which would load those of the file as it is.
  [[nodiscard]] SResult CreateMissingConfigFile(const std::string& fileName);
  /// Makes sure that this file exists and that the SLP library uses it.
  [[nodiscard]] SResult ValidateSLPEnvironmentConfigFile();

  // The daemon's settings. Names that end in "Internal" expect the caller to hold the core lock.

  [[nodiscard]] SResult GetSLPServiceConfig(CKelSLPServiceConfig& config, std::vector<SResult>& errors);
  [[nodiscard]] SResult SetSLPServiceConfig(const CKelSLPServiceConfig& config);
  [[nodiscard]] SResult GetSLPServiceConfigFromFileInternal(CKelSLPServiceConfig& config,
                                                            std::vector<SResult>& errors);
  [[nodiscard]] SResult SetSLPServiceConfigInternal(const CKelSLPServiceConfig& config);
  [[nodiscard]] SResult SetLocalScopes(const std::vector<std::string>& scopes);

 private:
  enum class RegistrationKind { kNew, kRenewal };

  // Registration.
  /// Registers, with both locks held, what `registration` copies together.
  [[nodiscard]] SResult RegisterLocked(const char* name, RegistrationKind kind,
                                       const std::function<SRegisteredService()>& registration);
  // The caller holds m_serviceLock and, but for a deregistration, the core lock exclusively.
  [[nodiscard]] SResult RegistrationBody(RegistrationKind kind, const SRegisteredService& service);
  [[nodiscard]] SResult DeregistrationBody(const std::string& url);
  [[nodiscard]] SResult AdmitScopes(const std::vector<std::string>& scopes);
  void StoreRegisteredService(SRegisteredService service);
  /// `reinitialize` answers a file that the SLP library doesn't use yet.
  [[nodiscard]] SResult ValidateOrReInitialize(const std::function<SResult()>& reinitialize);

  // Renewal.
  void StartTimer() noexcept;
  void TimerTick();

  // Control of the daemon; the caller holds m_serviceLock.
  [[nodiscard]] SResult StartBody();
  [[nodiscard]] SResult StopBody();
  [[nodiscard]] SResult OpenServiceHandles(ServiceHandles& handles, std::uint32_t serviceAccess);
  [[nodiscard]] SResult GetServiceStatus(platform::ServiceStatus& status,
                                         platform::ServiceManager::Handle service);
  /// Waits while the service stays in `state`; `status` is what it said last.
  [[nodiscard]] SResult WaitForServiceStatusChange(platform::ServiceStatus& status,
                                                   platform::ServiceState state,
                                                   platform::ServiceManager::Handle service);

  const ServicePlatform m_platform;

  /// Shared with the timer's threads, which may still report after the timer has gone.
  const std::shared_ptr<DroppedServiceReports> m_reports;

  ReportingLock<platform::RecursiveLock> m_serviceLock;
  // Guarded by m_serviceLock.
  /// A registration or a pass is under way. Cleared before m_serviceLock is left.
  bool m_registrationBusy = false;
  std::map<std::string, SRegisteredService> RegisteredServices;
  int m_checkIntervalMs = 2000;
  int m_reRegistrationMarginMs = 6000;
  std::unique_ptr<platform::PeriodicTimer> m_timer;

  std::mutex m_passGuard;
  bool m_passRunning = false;  // guarded by m_passGuard
};

}  // namespace kelsd
