// The yardstick for a unicast search: a bare UDP round trip over the loopback interface, with the fewest
// system calls that one takes, to a process that waits and answers as the daemon does. One thread.
#pragma once

#include <sys/types.h>

#include <asio/ip/udp.hpp>
#include <cstddef>

#include "bench/support/latencies.h"

namespace bench {

/// A process of its own that sends datagrams back: it waits in epoll, and reads until nothing is left. Ends
/// with this object, or with the process that made it.
class EchoProcess {
 public:
  /// To be made while the process has one thread. Throws std::system_error.
  EchoProcess();
  ~EchoProcess();
  EchoProcess(const EchoProcess&) = delete;
  EchoProcess& operator=(const EchoProcess&) = delete;

  /// Times `count` round trips of a datagram of `bytes` bytes, a socket opened for each. Throws
  /// std::system_error.
  Latencies TimeRoundTrips(std::size_t count, std::size_t bytes) const;

  pid_t process_id() const { return process_; }

 private:
  asio::ip::udp::endpoint address_;
  int lifeline_ = -1;  ///< the other process ends when this is closed
  pid_t process_ = -1;
};

}  // namespace bench
