// Watches an idle daemon for a minute: what it uses of the processor then. Writes its lines of
// docs/performance.md to the standard output.
#include <chrono>
#include <cstddef>
#include <exception>
#include <iostream>
#include <string>
#include <thread>

#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/operations.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/latencies.h"
#include "bench/support/table.h"

namespace bench {
namespace {

constexpr std::chrono::seconds kSettling{5};  // in its first ones a daemon asks for directory agents
constexpr std::chrono::seconds kWatched{60};
constexpr std::size_t kServices = 1000;

void Measure() {
  const BenchDaemon daemon;
  Fill(OpenSlpSession, 0, kServices);
  std::this_thread::sleep_for(kSettling);
  const ProcessUsage before = daemon.Usage();
  std::this_thread::sleep_for(kWatched);
  const ProcessUsage after = daemon.Usage();
  const std::string what = "CPU time of a daemon with " + std::to_string(kServices) + " services, idle for " +
                           std::to_string(kWatched.count()) + " s";
  PrintAtMost(what + ", by its CPU clock", Microseconds(after.processor_time - before.processor_time).count(),
              0, " us");
  const auto in_ticks = after.processor_time_in_ticks - before.processor_time_in_ticks;
  PrintAtMost(what + ", as process times show it, in ticks of " + std::to_string(ClockTick().count()) + " ms",
              static_cast<double>(in_ticks.count()), 0, " ms");
}

}  // namespace
}  // namespace bench

int main() {
  try {
    bench::Measure();
  } catch (const std::exception& error) {
    std::cerr << "the measurement failed: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
