// A TCP connection to one agent, each step of it bounded by a deadline (RFC 2608 section 6.2). One thread at
// a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <span>

#include "net/deadline.h"

namespace slp {

/// Calls block until they are done, fail, or the deadline passes. After anything but kDone the connection is
/// of no use any more. It is closed with the object.
class StreamConnection {
 public:
  enum class Status {
    kDone,
    kTimedOut,
    kFailed,  ///< refused, reset, closed by the peer, no way to it
  };

  explicit StreamConnection(asio::io_context& context) : socket_(context) {}

  Status Connect(const asio::ip::tcp::endpoint& peer, const Deadline& deadline);
  Status Write(std::span<const std::uint8_t> bytes, const Deadline& deadline);

  /// Fills `bytes` completely.
  Status Read(std::span<std::uint8_t> bytes, const Deadline& deadline);

 private:
  asio::ip::tcp::socket socket_;
};

}  // namespace slp
