// One request and its reply over TCP (RFC 2608 section 6.2), in steps that never block, so that one thread
// has several of them under way. One thread at a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "api/exchange.h"
#include "net/deadline.h"
#include "net/native_socket.h"
#include "net/stream_connection.h"

namespace slp::client {

/// Messages on the connection that are not the reply are passed over. The connection is closed with the
/// object.
class StreamFetch {
 public:
  /// `encoded` is `request` as bytes; both outlive the object.
  StreamFetch(asio::io_context& io, const Message& request, std::span<const std::uint8_t> encoded,
              const Deadline& deadline)
      : connection_(io), request_(request), unsent_(encoded), deadline_(deadline) {}

  /// How it has ended, when there is no way to `peer`.
  std::optional<Exchange> Start(const asio::ip::tcp::endpoint& peer);

  /// What it waits for, once it has started and until it ends.
  AwaitedSocket Awaited();

  /// `ready` tells whether what it waits for is. Goes a bounded part of the way, as far as that takes no
  /// waiting; how the exchange has ended, when it has: at the deadline at the latest.
  std::optional<Exchange> Advance(bool ready);

  std::chrono::milliseconds Remaining() const { return deadline_.Remaining(); }

  /// Gives it so much more time.
  void Postpone(std::chrono::steady_clock::duration by) { deadline_.Postpone(by); }

 private:
  enum class Step { kConnecting, kSending, kReceiving };

  /// As many bytes as PeekHeader needs.
  static constexpr std::size_t kHeaderStart = 12;

  StreamConnection::Status Move();
  StreamConnection::Status Send();
  StreamConnection::Status Receive();
  StreamConnection::Status TakeReceived();

  StreamConnection connection_;
  const Message& request_;
  std::span<const std::uint8_t> unsent_;
  Deadline deadline_;
  Step step_ = Step::kConnecting;
  Bytes received_;                       ///< of the message that is coming in
  std::size_t expected_ = kHeaderStart;  ///< length of its header, then of all of it
  std::optional<Message> reply_;
};

}  // namespace slp::client
