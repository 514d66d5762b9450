// The yardstick for a unicast search: a bare UDP round trip over the loopback interface, socket opened each
// time, to a thread that sends back what it gets.
#pragma once

#include <cstddef>

#include "bench/support/latencies.h"

namespace bench {

/// Times `count` round trips of a datagram of `bytes` bytes. Throws std::runtime_error when a socket fails.
Latencies TimeBareRoundTrips(std::size_t count, std::size_t bytes);

}  // namespace bench
