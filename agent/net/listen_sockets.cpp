#include "net/listen_sockets.h"

#include <asio/ip/multicast.hpp>
#include <asio/ip/v6_only.hpp>
#include <asio/socket_base.hpp>

#include "net/native_socket.h"

#ifdef _WIN32
#include <mstcpip.h>
#endif

namespace slp {
namespace {

using asio::ip::udp;

// What differs between the systems, so that the functions below read the same for both.
#ifdef _WIN32
asio::error_code Exclusive(asio::detail::socket_type socket) {
  const BOOL on = TRUE;
  return ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&on),
                      sizeof on) == 0
             ? asio::error_code()
             : asio::error_code(::WSAGetLastError(), asio::system_category());
}

// Without this a datagram that nobody wanted makes the next receive fail with "connection reset".
void IgnoreUnreachablePeers(asio::detail::socket_type socket) {
  BOOL off = FALSE;
  DWORD returned = 0;
  ::WSAIoctl(socket, _WSAIOW(IOC_VENDOR, 12), &off, sizeof off, nullptr, 0, &returned, nullptr, nullptr);
}

asio::error_code OwnMembershipsOnly(asio::detail::socket_type) {
  return {};
}

// No socket can be bound to a group.
asio::ip::address_v4 GroupBinding(const asio::ip::address_v4&) {
  return asio::ip::address_v4::any();
}

asio::error_code ShareWithGroups(udp::socket&) {
  return {};
}

// Wine keeps the group's socket off the port, although it is bound to another address, unless this one allows
// it. Windows has no such rule, and refuses to change a bound socket: all stays exclusive there.
void AllowGroupSocketBeside(udp::socket& socket, const asio::ip::address& local) {
  if (local.is_loopback()) {
    const BOOL off = FALSE;
    ::setsockopt(socket.native_handle(), SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&off),
                 sizeof off);
    asio::error_code ignored;
    socket.set_option(asio::socket_base::reuse_address(true), ignored);
  }
}

asio::error_code ReuseAfterRestart(asio::ip::tcp::acceptor& acceptor) {
  return Exclusive(acceptor.native_handle());
}
#else
asio::error_code Exclusive(int) {
  return {};
}

void IgnoreUnreachablePeers(int) {}

asio::error_code OwnMembershipsOnly(int socket) {
#ifdef IP_MULTICAST_ALL
  const int off = 0;
  if (::setsockopt(socket, IPPROTO_IP, IP_MULTICAST_ALL, &off, sizeof off) != 0) {
    return {errno, asio::system_category()};
  }
#else
  static_cast<void>(socket);
#endif
  return {};
}

asio::ip::address_v4 GroupBinding(const asio::ip::address_v4& group) {
  return group;
}

// The sockets of the groups are bound to all addresses of IPv6.
asio::error_code ShareWithGroups(udp::socket& socket) {
  asio::error_code error;
  socket.set_option(asio::socket_base::reuse_address(true), error);
  return error;
}

void AllowGroupSocketBeside(udp::socket&, const asio::ip::address&) {}

asio::error_code ReuseAfterRestart(asio::ip::tcp::acceptor& acceptor) {
  asio::error_code error;
  acceptor.set_option(asio::socket_base::reuse_address(true), error);
  return error;
}
#endif

// Runs the steps in order until one fails.
template <typename... Steps>
asio::error_code InOrder(Steps... steps) {
  asio::error_code error;
  static_cast<void>(((error = steps(), !error) && ...));
  return error;
}

template <typename Socket, typename Option>
asio::error_code SetOption(Socket& socket, const Option& option) {
  asio::error_code error;
  socket.set_option(option, error);
  return error;
}

template <typename Socket, typename Endpoint>
asio::error_code Bind(Socket& socket, const Endpoint& local) {
  asio::error_code error;
  socket.bind(local, error);
  return error;
}

template <typename Socket>
asio::error_code MakeNonBlocking(Socket& socket) {
  asio::error_code error;
  socket.non_blocking(true, error);
  return error;
}

// IPv4 has sockets of its own everywhere.
template <typename Socket, typename Protocol>
asio::error_code KeepFamilyApart(Socket& socket, const Protocol& protocol) {
  return protocol == Protocol::v6() ? SetOption(socket, asio::ip::v6_only(true)) : asio::error_code();
}

template <typename Option>
asio::error_code ChangeMembership(udp::socket& socket, const asio::ip::address& group,
                                  const asio::ip::address& interface_address, std::uint32_t index) {
  return group.is_v4() ? SetOption(socket, Option(group.to_v4(), interface_address.to_v4()))
                       : SetOption(socket, Option(group.to_v6(), index));
}

}  // namespace

#ifdef _WIN32
const bool kUnicastSocketHearsBroadcast = true;

bool UnicastSocketHearsGroup(const asio::ip::address& local) {
  return !local.is_loopback();
}
#else
const bool kUnicastSocketHearsBroadcast = false;

bool UnicastSocketHearsGroup(const asio::ip::address&) {
  return false;
}
#endif

asio::error_code OpenUnicastSocket(udp::socket& socket, const udp::endpoint& local, int ttl,
                                   std::uint32_t interface_index) {
  return InOrder([&] { return OpenUninherited(socket, local.protocol()); },
                 [&] { return KeepFamilyApart(socket, local.protocol()); },
                 [&] { return Exclusive(socket.native_handle()); },
                 [&] { return local.address().is_v6() ? ShareWithGroups(socket) : asio::error_code(); },
                 // Bound to every address it would hear the groups that other processes of the host joined.
                 [&] { return OwnMembershipsOnly(socket.native_handle()); },
                 [&] { return SendGroupsBy(socket, local.address(), interface_index); },
                 [&] { return SetOption(socket, asio::ip::multicast::hops(ttl)); },
                 [&] {
                   return local.address().is_v4() ? SetOption(socket, asio::socket_base::broadcast(true))
                                                  : asio::error_code();
                 },
                 [&] { return Bind(socket, local); },
                 [&] {
                   IgnoreUnreachablePeers(socket.native_handle());
                   AllowGroupSocketBeside(socket, local.address());
                   return MakeNonBlocking(socket);
                 });
}

asio::error_code OpenGroupSocket(udp::socket& socket, const asio::ip::address_v4& group, std::uint16_t port,
                                 const asio::ip::address_v4& interface_address) {
  const udp::endpoint local(GroupBinding(group), port);
  return InOrder(
      [&] { return OpenUninherited(socket, local.protocol()); },
      [&] { return SetOption(socket, asio::socket_base::reuse_address(true)); },
      [&] { return OwnMembershipsOnly(socket.native_handle()); }, [&] { return Bind(socket, local); },
      [&] { return JoinGroup(socket, group, interface_address); }, [&] { return MakeNonBlocking(socket); });
}

asio::error_code OpenBroadcastSocket(udp::socket& socket, const udp::endpoint& broadcast) {
  return InOrder([&] { return OpenUninherited(socket, broadcast.protocol()); },
                 [&] { return SetOption(socket, asio::socket_base::reuse_address(true)); },
                 [&] { return Bind(socket, broadcast); }, [&] { return MakeNonBlocking(socket); });
}

asio::error_code SendGroupsBy(udp::socket& socket, const asio::ip::address& address, std::uint32_t index) {
  return address.is_v4() ? SetOption(socket, asio::ip::multicast::outbound_interface(address.to_v4()))
                         : SetOption(socket, asio::ip::multicast::outbound_interface(index));
}

asio::error_code JoinGroup(udp::socket& socket, const asio::ip::address& group,
                           const asio::ip::address& interface_address, std::uint32_t interface_index) {
  return ChangeMembership<asio::ip::multicast::join_group>(socket, group, interface_address, interface_index);
}

asio::error_code LeaveGroup(udp::socket& socket, const asio::ip::address& group,
                            const asio::ip::address& interface_address, std::uint32_t interface_index) {
  return ChangeMembership<asio::ip::multicast::leave_group>(socket, group, interface_address,
                                                            interface_index);
}

asio::error_code OpenAcceptor(asio::ip::tcp::acceptor& acceptor, const asio::ip::tcp::endpoint& local) {
  return InOrder([&] { return OpenUninherited(acceptor, local.protocol()); },
                 [&] { return KeepFamilyApart(acceptor, local.protocol()); },
                 [&] { return ReuseAfterRestart(acceptor); }, [&] { return Bind(acceptor, local); },
                 [&] {
                   asio::error_code error;
                   acceptor.listen(asio::socket_base::max_listen_connections, error);
                   return error;
                 },
                 [&] { return MakeNonBlocking(acceptor); });
}

}  // namespace slp
