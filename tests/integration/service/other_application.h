// Another process that uses the library: it registers one service and keeps it registered. One thread.
#pragma once

#include <chrono>
#include <string>

#include "support/child_process/child_process.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::integration {

class OtherApplication {
 public:
  /// Returns when the service has been registered; throws std::runtime_error when it could not be. It is left
  /// alone from then on, until LookAfterIt. The application's end comes without any farewell.
  OtherApplication(const std::string& url, int lifetime_seconds, std::chrono::milliseconds check_interval);

  /// From here on the application looks after its service and the daemon, once in each interval.
  void LookAfterIt() const { folder_.Write(kLooksAfter, ""); }

  void Kill() { process_.Kill(); }

 private:
  static constexpr const char* kLooksAfter = "looks-after";

  TemporaryFolder folder_;
  support::ChildProcess process_;
};

}  // namespace kelsd::integration
