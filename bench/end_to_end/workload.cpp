#include "bench/end_to_end/workload.h"

#include <exception>
#include <future>
#include <memory>
#include <vector>

namespace bench {
namespace {

// Every so-manieth run of `operation`, from the `first` on.
Workload RunShare(const Operation& operation, std::size_t first, std::size_t step, const OpenSession& open) {
  const std::unique_ptr<Session> session = open();
  Workload share;
  for (std::size_t number = first; number < operation.runs; number += step) {
    share.latencies.Time([&] {
      try {
        operation.run(*session, number);
      } catch (const std::exception& failure) {
        ++share.failures;
        share.a_failure = failure.what();
      }
    });
  }
  return share;
}

}  // namespace

double Workload::PerSecond() const {
  return static_cast<double>(latencies.count()) / std::chrono::duration<double>(duration).count();
}

Workload Run(const Operation& operation, std::size_t threads, const OpenSession& open) {
  const Clock::time_point start = Clock::now();
  std::vector<std::future<Workload>> shares;
  for (std::size_t thread = 0; thread < threads; ++thread) {
    shares.push_back(
        std::async(std::launch::async, [&, thread] { return RunShare(operation, thread, threads, open); }));
  }
  Workload workload;
  for (std::future<Workload>& future : shares) {
    const Workload share = future.get();
    workload.latencies.Add(share.latencies);
    workload.failures += share.failures;
    workload.a_failure = share.a_failure.empty() ? workload.a_failure : share.a_failure;
  }
  workload.duration = Clock::now() - start;
  return workload;
}

}  // namespace bench
