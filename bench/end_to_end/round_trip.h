// A search beside the bare round trip that it cannot do without. One thread.
#pragma once

#include "bench/end_to_end/bench_daemon.h"
#include "bench/support/echo.h"

namespace bench {

/// Compares a search for one of `size` services, a handle opened for it, with the round trip of a datagram:
/// while the process has another handle open and while it has none, both in the same place. Writes a table
/// and a target. The calling process has no handle open.
void CompareWithBareRoundTrip(const EchoProcess& echo, const BenchDaemon& daemon, std::size_t size);

}  // namespace bench
