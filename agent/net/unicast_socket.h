// A datagram socket for the requests to one peer. It needs no event loop, whose making takes longer than a
// whole exchange on the own host. Nothing blocks; waiting is WaitUntilReady's. One thread at a time.
#pragma once

#include <asio/ip/udp.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "net/native_socket.h"

namespace slp {

class UnicastSocket {
 public:
  enum class Received {
    kDatagram,
    kNothing,
    kRefused,  ///< the peer does not listen, or its host cannot be reached
    kFailed,   ///< the socket is of no use any more
  };

  /// Hears `peer` alone, and that it refuses. None when there is no socket, or no way to the peer.
  static std::optional<UnicastSocket> ConnectedTo(const asio::ip::udp::endpoint& peer);

  UnicastSocket(UnicastSocket&& other) noexcept;
  UnicastSocket& operator=(UnicastSocket&&) = delete;
  ~UnicastSocket();

  /// False when the system took nothing. A refusal, which is about an earlier datagram, does not count.
  bool Send(std::span<const std::uint8_t> bytes);

  /// kDatagram: `bytes` is what came, which may be nothing, until the next call.
  Received Receive(std::span<const std::uint8_t>& bytes);

  NativeSocket native_handle() const { return socket_; }

 private:
  explicit UnicastSocket(NativeSocket socket) : socket_(socket) {}

  /// What a system call came to.
  enum class Outcome { kDone, kWouldBlock, kRefused, kFailed };

  // The operating system's part.
  static NativeSocket Open(int family);
  static bool Connect(NativeSocket socket, const asio::ip::udp::endpoint& peer);
  static Outcome LastOutcome();  ///< of a call that failed just now
  Outcome SendOnce(std::span<const std::uint8_t> bytes);
  Outcome ReceiveOnce(std::span<std::uint8_t> buffer, std::size_t& size);

  NativeSocket socket_;
  std::unique_ptr<std::uint8_t[]> buffer_;  ///< made by the first Receive, and never cleared
};

}  // namespace slp
