// The daemon that is measured: the built slpd on the loopback interface, with its default limits, or one that
// runs already. One thread.
#pragma once

#include <optional>

#include "bench/support/process_usage.h"
#include "support/slpd_process/slpd_process.h"

namespace bench {

class BenchDaemon {
 public:
  /// Starts the built slpd, and has the SLP library of this process read its configuration file and the
  /// library's classes find it by its pid file. With `running`, a process id, nothing is started and the
  /// environment stays as it is. Throws std::runtime_error when slpd doesn't start.
  explicit BenchDaemon(std::optional<int> running = {});

  /// Throws std::runtime_error when there is no such process any more.
  ProcessUsage Usage() const { return UsageOf(process_id_); }
  int process_id() const { return process_id_; }

 private:
  std::optional<slp::support::SlpdProcess> started_;
  int process_id_ = 0;
};

}  // namespace bench
