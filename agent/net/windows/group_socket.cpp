// A socket that is bound to all addresses hears the groups that it has joined itself, and no others.
#include "net/group_socket.h"

#include <asio/buffer.hpp>

namespace slp {

asio::error_code PrepareForGroups(asio::ip::udp::socket&) {
  return {};
}

asio::error_code ReceiveFromGroup(asio::ip::udp::socket& socket, std::span<std::uint8_t> buffer,
                                  GroupDatagram& datagram) {
  datagram = {};
  asio::error_code error;
  datagram.size = socket.receive_from(asio::buffer(buffer.data(), buffer.size()), datagram.sender, 0, error);
  return error;
}

}  // namespace slp
