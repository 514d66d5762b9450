// Runs an operation many times, on one thread or on several at once, each with a session of its own.
#pragma once

#include <cstddef>
#include <functional>

#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"

namespace bench {

struct Workload {
  Latencies latencies;
  Clock::duration duration{0};  ///< of all of them together

  double PerSecond() const;
};

/// Runs `operation` for every number below `count`, shared out evenly among `threads` threads. Throws what an
/// operation threw.
Workload Run(std::size_t count, std::size_t threads,
             const std::function<void(SlpSession& session, std::size_t number)>& operation);

}  // namespace bench
