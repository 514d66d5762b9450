// A TCP connection to one agent (RFC 2608 section 6.2). Nothing blocks; waiting is WaitUntilReady's. One
// thread at a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "net/native_socket.h"

namespace slp {

/// After kFailed the connection is of no use any more. It is closed with the object.
class StreamConnection {
 public:
  enum class Status {
    kDone,
    kBlocked,  ///< nothing goes before the socket is ready
    kFailed,   ///< refused, reset, closed by the peer, no way to it
  };

  explicit StreamConnection(asio::io_context& context) : socket_(context) {}

  /// kBlocked: call FinishConnect once the socket is ready for writing.
  Status StartConnect(const asio::ip::tcp::endpoint& peer);
  Status FinishConnect();

  /// Sends as much of `bytes` as goes, at least one byte when it is done, and leaves the rest in it.
  Status Write(std::span<const std::uint8_t>& bytes);

  /// Appends to `bytes` what is there: at least one byte when it is done, never more than `most`.
  Status Read(std::vector<std::uint8_t>& bytes, std::size_t most);

  NativeSocket native_handle() { return socket_.native_handle(); }

 private:
  asio::ip::tcp::socket socket_;
};

}  // namespace slp
