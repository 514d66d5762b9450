// Announcing services, keeping them announced, and control of the local SLP daemon "slpd".
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "kelsd/CKelSLP.h"
#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/Export.h"
#include "kelsd/IKelServiceType.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Static functions over the state that this process has once. Any thread may call them; none throws. All but
/// GetSLPServiceConfig and SetReRegistrationFailedCallback take turns: one that starts or stops the daemon
/// keeps the others waiting until the daemon has answered or run out of time. Outputs are written only on
/// success.
///
/// The daemon's settings live in the file that the environment variable "OpenSLPConfig" names. Registrations,
/// deregistrations and both settings calls create that file, with its folders, when it is missing
/// (ERR_CONF_DIR_CREATE, ERR_CONF_CREATE when they can't), and fail with ERR_ENV_NOT_SET when there is no
/// such variable; all but SetSLPServiceConfig fail with ERR_RESTART_REQUIRED when SLP does not use that file.
class KELSD_EXPORT CKelSLPService : public CKelSLP {
 public:
  ~CKelSLPService() override;

  // Registration. The daemon is started when it doesn't run.

  /// Registers the service `url` with the daemon for `lifetime` seconds and keeps it registered: it is
  /// renewed before the lifetime ends and when the daemon has been restarted, until DeregisterService or the
  /// end of the process. Registering a URL again replaces its registration.
  ///
  /// `attributes`: values by tag. `scopes`: where the service is to be found, empty for the daemon's own; one
  /// that the daemon doesn't serve is added to its settings, and the daemon is restarted. Fails with
  /// ERR_NOT_INITIALIZED before CKelSLP::Initialize. Waits for running searches.
  static SResult RegisterService(const std::string& url, unsigned short lifetime,
                                 const std::map<std::string, std::string>& attributes,
                                 const std::vector<std::string>& scopes);
  /// The same for tags given by their values.
  static SResult RegisterService(const std::string& url, unsigned short lifetime,
                                 const std::map<IKelServiceType::EAttr, std::string>& attributes,
                                 const std::vector<std::string>& scopes);
  /// The same for service URL, lifetime, attributes and scopes of `type`.
  static SResult RegisterService(const IKelServiceType& type);

  /// Withdraws the service `url`, for which the daemon is started when it doesn't run. It is no longer
  /// renewed, also when the daemon cannot be told; only a `url` that is none, and a failure that concerns the
  /// configuration file, leave all as it is.
  static SResult DeregisterService(const std::string& url);
  /// The same for the service URL of `type`.
  static SResult DeregisterService(const IKelServiceType& type);

  // Renewal.

  /// How often registrations are looked after, in milliseconds, at least 1; at first 2000. A service is
  /// renewed three intervals before its lifetime ends, at least two seconds.
  static SResult SetRegistrationCheckInterval(int intervalMs);
  /// Called once for each service that could not be renewed five times in a row and is given up, with its URL
  /// and how the last attempt failed. An empty function ends that.
  ///
  /// Calls come one at a time, on a thread of the library, or on the thread that has started the daemon
  /// before its call returns, or on a thread that is already reporting. No lock is held: the callback may
  /// call the library and wait for other threads. What it throws is dropped; on Windows it throws nothing
  /// unless library and application share one C++ run-time library. A call that is under way goes on after
  /// the callback has been replaced.
  static void SetReRegistrationFailedCallback(std::function<void(std::string, SResult)> callback);

  // Control of the daemon. They work without initialisation.

  /// Starts the daemon and registers this process's services with it. ERR_SLPD_ALREADY_RUNNING when it runs
  /// or is starting.
  static SResult StartSLPD();
  /// Stops the daemon; a success when it doesn't run. A process that still has services registered, this one
  /// or another, starts it again with its next check: they are to be deregistered first.
  static SResult StopSLPD();
  /// Stops and starts the daemon; one that doesn't run is started.
  static SResult RestartSLPD();
  /// False also while the daemon is starting or stopping.
  static SResult IsSLPDRunning(bool& running);

  // The daemon's settings.

  /// The settings as SLP read them at the last initialisation. `errors` is replaced by one entry for each
  /// property that could not be read and each value that the record refused; these hold their defaults, and
  /// the call succeeds all the same. Fails with ERR_NOT_INITIALIZED before CKelSLP::Initialize.
  static SResult GetSLPServiceConfig(CKelSLPServiceConfig& config, std::vector<SResult>& errors);
  /// Writes the editable settings into the configuration file, where everything else stays as it is (a file
  /// that doesn't exist is created), initialises again, and restarts the daemon, which starts one that
  /// doesn't run, when a setting has effectively changed. Waits for running searches, and two to three
  /// seconds for another program that is writing the file. ERR_CONF_OPEN when that one takes longer or the
  /// file may not be opened, ERR_CONF_WRITE when it could not be written.
  static SResult SetSLPServiceConfig(const CKelSLPServiceConfig& config);
};

}  // namespace kelsd
