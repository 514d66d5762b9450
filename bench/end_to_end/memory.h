// What a registration takes of the daemon's memory. One thread.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "bench/end_to_end/bench_daemon.h"

namespace bench {

/// Fills an empty daemon up to each of `sizes`, which ascend, writes a table of its resident memory, and
/// empties it again. Returns the bytes a registration by size, beyond what the empty daemon had.
std::map<std::size_t, double> MeasureMemory(const std::vector<std::size_t>& sizes, const BenchDaemon& daemon);

}  // namespace bench
