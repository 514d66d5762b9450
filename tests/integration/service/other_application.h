// Another process that uses the library: it registers one service and keeps it registered. One thread.
#pragma once

#include <chrono>
#include <string>

#include "support/child_process/child_process.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::integration {

class OtherApplication {
 public:
  /// Returns when the service has been registered; throws std::runtime_error when it could not be. Its end
  /// comes without any farewell.
  OtherApplication(const std::string& url, int lifetime_seconds, std::chrono::milliseconds check_interval);

  void Kill() { process_.Kill(); }

 private:
  TemporaryFolder folder_;
  support::ChildProcess process_;
};

}  // namespace kelsd::integration
