// Watches an idle daemon for a minute: what it uses of the processor then. Writes its target of
// docs/performance.md to the standard output.
#include <exception>
#include <iostream>
#include <thread>

#include "bench/end_to_end/bench_daemon.h"
#include "bench/end_to_end/slp_session.h"
#include "bench/support/table.h"

namespace bench {
namespace {

constexpr std::chrono::seconds kWatched{60};
constexpr std::size_t kServices = 1000;

void Measure() {
  BenchDaemon daemon;
  SlpSession session;
  for (std::size_t index = 0; index < kServices; ++index) {
    session.Register(index);
  }
  const ProcessUsage before = daemon.Usage();
  std::this_thread::sleep_for(kWatched);
  const std::chrono::milliseconds used = daemon.Usage().processor_time - before.processor_time;
  PrintTarget("CPU time of a daemon with " + std::to_string(kServices) + " services, idle for 60 s",
              static_cast<double>(used.count()), 0, " ms");
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
