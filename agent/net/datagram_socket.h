// A datagram socket from which requests are sent to many. Nothing blocks; waiting is WaitUntilReady's. One
// thread at a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "net/native_socket.h"

namespace slp {

class DatagramSocket {
 public:
  struct Datagram {
    std::vector<std::uint8_t> bytes;  ///< may be empty: UDP knows datagrams without content
    asio::ip::udp::endpoint from;
  };
  enum class Received {
    kDatagram,
    kNothing,
    kRefused,  ///< the system says that a host which was sent to cannot be reached, or does not listen
    kFailed,   ///< the socket is of no use any more
  };

  /// What it sends to a group leaves by the interface of `local`, with `ttl` hops, and is heard on this host
  /// too.
  static std::optional<DatagramSocket> ForMulticast(asio::io_context& context,
                                                    const asio::ip::address_v4& local, int ttl);
  /// The same for groups of IPv6, by the interface with this index; the system chooses among its addresses
  /// what suits the group.
  static std::optional<DatagramSocket> ForIpv6Multicast(asio::io_context& context,
                                                        std::uint32_t interface_index, int ttl);
  /// May send to broadcast addresses; they leave by the interface of `local`.
  static std::optional<DatagramSocket> ForBroadcast(asio::io_context& context,
                                                    const asio::ip::address_v4& local);

  /// False when the system took nothing. A refusal, which is about an earlier datagram, does not count.
  bool SendTo(std::span<const std::uint8_t> bytes, const asio::ip::udp::endpoint& to);

  Received Receive(Datagram& datagram);

  NativeSocket native_handle() { return socket_.native_handle(); }

 private:
  explicit DatagramSocket(asio::io_context& context) : socket_(context) {}

  asio::ip::udp::socket socket_;
};

}  // namespace slp
