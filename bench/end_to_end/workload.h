// Runs an operation many times, on one thread or on several at once, each with a session of its own.
#pragma once

#include <cstddef>
#include <string>

#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/session.h"
#include "bench/support/latencies.h"

namespace bench {

struct Workload {
  Latencies latencies;
  Clock::duration duration{0};  ///< of all of them together
  std::size_t failures = 0;     ///< runs that failed or gave a wrong answer; their times count as well
  std::string a_failure;        ///< what one of them says

  double PerSecond() const;
};

/// Runs `operation` as often as it says, shared out evenly among `threads` threads. Throws when a session
/// cannot be opened.
Workload Run(const Operation& operation, std::size_t threads, const OpenSession& open);

}  // namespace bench
