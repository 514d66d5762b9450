// Sockets that hear many groups of IPv6, each on the interfaces that it is joined on (JoinGroup). Any thread,
// one socket at a time.
#pragma once

#include <asio/error_code.hpp>
#include <asio/ip/address_v6.hpp>
#include <asio/ip/udp.hpp>
#include <cstddef>
#include <cstdint>
#include <span>

namespace slp {

struct GroupDatagram {
  std::size_t size = 0;
  asio::ip::udp::endpoint sender;
  /// What it was sent to, without a zone. The system hands over what is for other programs' groups and for
  /// the addresses of this host, too. Unspecified on Windows, which hands over nothing but the joined groups.
  asio::ip::address_v6 group;
  std::uint32_t interface_index = 0;  ///< which it came through; 0 where `group` is unspecified
};

/// A non-blocking socket bound to `port` of all addresses. Several programs may hold one, beside sockets from
/// OpenUnicastSocket.
asio::error_code OpenSocketForGroups(asio::ip::udp::socket& socket, std::uint16_t port);

/// Fills `buffer`; asio::error::would_block when nothing is there.
asio::error_code ReceiveFromGroup(asio::ip::udp::socket& socket, std::span<std::uint8_t> buffer,
                                  GroupDatagram& datagram);

/// The operating system's part of OpenSocketForGroups: what it has to set before the socket is bound.
asio::error_code PrepareForGroups(asio::ip::udp::socket& socket);

}  // namespace slp
