// Measuring operations: what their callers see, and what the daemon takes for them. One thread.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/session.h"
#include "bench/end_to_end/workload.h"
#include "bench/support/latencies.h"
#include "bench/support/table.h"

namespace bench {

inline constexpr std::array<std::size_t, 2> kThreads{1, 4};

struct Measurement {
  std::string operation;
  std::size_t registrations = 0;
  std::size_t threads = 0;
  Workload workload;
  Microseconds daemon_time_each{0};

  double Median() const { return workload.latencies.Percentile(50).count(); }  ///< microseconds
};

/// Runs `operation` on `threads` threads while there are `registrations`.
Measurement Measure(const Operation& operation, std::size_t registrations, std::size_t threads,
                    const OpenSession& open, const BenchDaemon& daemon);

/// The one of `operation` at `registrations` on one thread; throws std::out_of_range when there is none.
const Measurement& OnOneThread(const std::vector<Measurement>& measurements, const std::string& operation,
                               std::size_t registrations);

/// The headings of a table of measurements, and the cells that one has under them.
Row MeasurementHeadings();
Row CellsOf(const Measurement& measurement);

/// Writes, as a target, whether no run failed or gave a wrong answer.
void PrintFailures(const std::vector<Measurement>& measurements);

}  // namespace bench
