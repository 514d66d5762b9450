#include "bench/end_to_end/measurement.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace bench {

Measurement Measure(const Operation& operation, std::size_t registrations, std::size_t threads,
                    const OpenSession& open, const BenchDaemon& daemon) {
  Measurement measurement{operation.name, registrations, threads, {}, {}};
  const ProcessUsage before = daemon.Usage();
  measurement.workload = Run(operation, threads, open);
  measurement.daemon_time_each = Microseconds(daemon.Usage().processor_time - before.processor_time) /
                                 static_cast<double>(operation.runs);
  return measurement;
}

const Measurement& OnOneThread(const std::vector<Measurement>& measurements, const std::string& operation,
                               std::size_t registrations) {
  const auto found =
      std::find_if(measurements.begin(), measurements.end(), [&](const Measurement& measurement) {
        return measurement.operation == operation && measurement.registrations == registrations &&
               measurement.threads == 1;
      });
  if (found == measurements.end()) {
    throw std::out_of_range(operation + " was not measured at " + std::to_string(registrations));
  }
  return *found;
}

Row MeasurementHeadings() {
  return {"operation", "registrations", "threads", "a second", "p50 us", "p99 us", "daemon CPU us"};
}

Row CellsOf(const Measurement& measurement) {
  const Latencies& latencies = measurement.workload.latencies;
  return {measurement.operation,
          std::to_string(measurement.registrations),
          std::to_string(measurement.threads),
          Number(measurement.workload.PerSecond()),
          Number(latencies.Percentile(50).count()),
          Number(latencies.Percentile(99).count()),
          Number(measurement.daemon_time_each.count())};
}

void PrintFailures(const std::vector<Measurement>& measurements) {
  std::size_t runs = 0;
  std::size_t failures = 0;
  for (const Measurement& measurement : measurements) {
    runs += measurement.workload.latencies.count();
    failures += measurement.workload.failures;
    if (measurement.workload.failures > 0) {
      std::cerr << measurement.operation << " at " << measurement.registrations << " on "
                << measurement.threads << " threads: " << measurement.workload.failures
                << " runs failed, one of them: " << measurement.workload.a_failure << "\n";
    }
  }
  PrintAtMost("runs that failed or gave a wrong answer, of " + std::to_string(runs),
              static_cast<double>(failures), 0, "");
}

}  // namespace bench
