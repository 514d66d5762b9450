// The part that every platform shares.
#include "net/group_socket.h"

#include <asio/ip/v6_only.hpp>
#include <asio/socket_base.hpp>

#include "net/native_socket.h"

namespace slp {

asio::error_code OpenSocketForGroups(asio::ip::udp::socket& socket, std::uint16_t port) {
  asio::error_code error = OpenUninherited(socket, asio::ip::udp::v6());
  if (!error) {
    socket.set_option(asio::ip::v6_only(true), error);
  }
  if (!error) {
    socket.set_option(asio::socket_base::reuse_address(true), error);
  }
  if (!error) {
    error = PrepareForGroups(socket);
  }
  if (!error) {
    socket.bind({asio::ip::address_v6::any(), port}, error);
  }
  if (!error) {
    socket.non_blocking(true, error);
  }
  return error;
}

}  // namespace slp
