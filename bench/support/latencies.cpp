#include "bench/support/latencies.h"

#include <algorithm>
#include <cmath>

namespace bench {

void Latencies::Add(const Latencies& others) {
  samples_.insert(samples_.end(), others.samples_.begin(), others.samples_.end());
}

Microseconds Latencies::Percentile(double percent) const {
  if (samples_.empty()) {
    return Microseconds(0);
  }
  std::vector<Microseconds> sorted = samples_;
  const double rank = std::ceil(percent / 100 * static_cast<double>(sorted.size()));
  const auto index = static_cast<std::ptrdiff_t>(std::max(rank, 1.0)) - 1;
  std::nth_element(sorted.begin(), sorted.begin() + index, sorted.end());
  return sorted[static_cast<std::size_t>(index)];
}

}  // namespace bench
