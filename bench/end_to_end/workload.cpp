#include "bench/end_to_end/workload.h"

#include <future>
#include <vector>

namespace bench {

double Workload::PerSecond() const {
  return static_cast<double>(latencies.count()) / std::chrono::duration<double>(duration).count();
}

Workload Run(std::size_t count, std::size_t threads,
             const std::function<void(SlpSession&, std::size_t)>& operation) {
  const Clock::time_point start = Clock::now();
  std::vector<std::future<Latencies>> shares;
  for (std::size_t thread = 0; thread < threads; ++thread) {
    shares.push_back(std::async(std::launch::async, [&operation, count, threads, thread] {
      SlpSession session;
      Latencies latencies;
      for (std::size_t number = thread; number < count; number += threads) {
        latencies.Time([&] { operation(session, number); });
      }
      return latencies;
    }));
  }
  Workload workload;
  for (std::future<Latencies>& share : shares) {
    workload.latencies.Add(share.get());
  }
  workload.duration = Clock::now() - start;
  return workload;
}

}  // namespace bench
