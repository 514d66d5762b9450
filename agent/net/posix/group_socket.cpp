// With the destination that IPV6_RECVPKTINFO tells (RFC 3542 section 6.2).
#include "net/group_socket.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <array>
#include <asio/error.hpp>
#include <cerrno>
#include <cstring>

namespace slp {
namespace {

asio::error_code LastError() {
  return {errno, asio::error::get_system_category()};
}

asio::error_code SetNumber(int socket, int level, int option, int value) {
  return ::setsockopt(socket, level, option, &value, sizeof value) == 0 ? asio::error_code() : LastError();
}

// Where the system can leave out what others have joined, it has less to hand over.
void LeaveOutOtherGroups(int socket) {
#ifdef IPV6_MULTICAST_ALL
  static_cast<void>(SetNumber(socket, IPPROTO_IPV6, IPV6_MULTICAST_ALL, 0));
#else
  static_cast<void>(socket);
#endif
}

void TakeDestination(const in6_pktinfo& destination, GroupDatagram& datagram) {
  asio::ip::address_v6::bytes_type bytes;
  std::memcpy(bytes.data(), &destination.ipi6_addr, bytes.size());
  datagram.group = asio::ip::address_v6(bytes);
  datagram.interface_index = destination.ipi6_ifindex;
}

}  // namespace

asio::error_code PrepareForGroups(asio::ip::udp::socket& socket) {
  LeaveOutOtherGroups(socket.native_handle());
  return SetNumber(socket.native_handle(), IPPROTO_IPV6, IPV6_RECVPKTINFO, 1);
}

asio::error_code ReceiveFromGroup(asio::ip::udp::socket& socket, std::span<std::uint8_t> buffer,
                                  GroupDatagram& datagram) {
  datagram = {};
  iovec content{buffer.data(), buffer.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in6_pktinfo))> control{};
  msghdr message{};
  message.msg_name = datagram.sender.data();
  message.msg_namelen = static_cast<socklen_t>(datagram.sender.capacity());
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  const ssize_t size = ::recvmsg(socket.native_handle(), &message, 0);
  if (size < 0) {
    return LastError();
  }
  datagram.size = static_cast<std::size_t>(size);
  datagram.sender.resize(message.msg_namelen);
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr; header = CMSG_NXTHDR(&message, header)) {
    if (header->cmsg_level == IPPROTO_IPV6 && header->cmsg_type == IPV6_PKTINFO) {
      in6_pktinfo destination;
      std::memcpy(&destination, CMSG_DATA(header), sizeof destination);
      TakeDestination(destination, datagram);
    }
  }
  return {};
}

}  // namespace slp
