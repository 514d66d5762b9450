// How long many runs of one operation took. One thread; collect per thread and add up.
#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

class Latencies {
 public:
  /// Runs `operation` once and keeps its time.
  template <typename Operation>
  void Time(Operation&& operation) {
    const Clock::time_point start = Clock::now();
    operation();
    samples_.push_back(Clock::now() - start);
  }

  void Add(const Latencies& others);

  std::size_t count() const { return samples_.size(); }

  /// The time that `percent` of all runs didn't exceed; 0 without runs.
  Microseconds Percentile(double percent) const;

 private:
  std::vector<Microseconds> samples_;
};

}  // namespace bench
