// Another process that uses the library: it registers one service and keeps it registered. One thread.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

namespace kelsd::integration {

class OtherApplication {
 public:
  /// Returns when the service has been registered; throws std::runtime_error when it could not be.
  OtherApplication(const std::string& url, int lifetime_seconds, std::chrono::milliseconds check_interval);
  /// Ends the process without any farewell.
  ~OtherApplication();
  OtherApplication(const OtherApplication&) = delete;
  OtherApplication& operator=(const OtherApplication&) = delete;

  /// SIGKILL, and waits for the end.
  void Kill();

 private:
  pid_t process_ = 0;
  int input_ = -1;
};

}  // namespace kelsd::integration
