// The sockets on which a daemon listens, opened with the options that SLP needs of each. Any thread, one
// socket at a time.
#pragma once

#include <asio/ip/address.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>

namespace slp {

/// Where the system delivers a group's datagrams to sockets that are bound to an interface's address
/// (Windows, but for the loopback interface), the unicast socket itself joins the group and its datagrams are
/// told apart by the flag in their header. Elsewhere a second socket is there for the group.
bool UnicastSocketHearsGroup(const asio::ip::address& local);

/// Whether it hears broadcasts too (Windows).
extern const bool kUnicastSocketHearsBroadcast;

/// A non-blocking datagram socket bound to `local`; what it sends to a group leaves by this address, or with
/// IPv6 by the interface with this index, with `ttl` hops. A second program can't bind the same IPv4
/// address and port; of IPv6 what the groups' sockets need lets it, and OpenAcceptor keeps it off.
asio::error_code OpenUnicastSocket(asio::ip::udp::socket& socket, const asio::ip::udp::endpoint& local,
                                   int ttl, std::uint32_t interface_index = 0);

/// A non-blocking socket that hears what reaches a group of IPv4 through the interface of
/// `interface_address`, and nothing that other sockets of this host have joined. Several programs may hold
/// one. Those of IPv6 are OpenSocketForGroups'.
asio::error_code OpenGroupSocket(asio::ip::udp::socket& socket, const asio::ip::address_v4& group,
                                 std::uint16_t port, const asio::ip::address_v4& interface_address);

/// A non-blocking socket bound to a broadcast address, whatever interface its datagrams come through. Several
/// programs may hold one. Not needed where kUnicastSocketHearsBroadcast.
asio::error_code OpenBroadcastSocket(asio::ip::udp::socket& socket, const asio::ip::udp::endpoint& broadcast);

/// From now on what the socket sends to a group leaves by this address, or with IPv6 by the interface with
/// this index.
asio::error_code SendGroupsBy(asio::ip::udp::socket& socket, const asio::ip::address& address,
                              std::uint32_t index);

/// Lets a socket hear `group` through that interface.
asio::error_code JoinGroup(asio::ip::udp::socket& socket, const asio::ip::address& group,
                           const asio::ip::address& interface_address, std::uint32_t interface_index = 0);

/// The opposite of JoinGroup.
asio::error_code LeaveGroup(asio::ip::udp::socket& socket, const asio::ip::address& group,
                            const asio::ip::address& interface_address, std::uint32_t interface_index = 0);

/// A listening TCP socket. A restarted program can take an address again whose old connections still linger,
/// a second one can't take it while the first listens.
asio::error_code OpenAcceptor(asio::ip::tcp::acceptor& acceptor, const asio::ip::tcp::endpoint& local);

}  // namespace slp
