// The daemon that is measured: the built slpd on the loopback interface, with its default limits. The SLP
// library of this process reads the same configuration file.
#pragma once

#include "bench/support/process_usage.h"
#include "support/slpd_process/slpd_process.h"

namespace bench {

class BenchDaemon {
 public:
  /// Throws std::runtime_error when it doesn't start.
  BenchDaemon();

  ProcessUsage Usage() { return UsageOf(process_.process_id()); }
  int process_id() { return process_.process_id(); }

 private:
  slp::support::SlpdProcess process_;
};

}  // namespace bench
