// Whether tests can use IPv6 on this system. Any thread.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

namespace slp::support {

/// What a test says that cannot run without it.
inline constexpr char kNoIpv6[] = "this system has no IPv6 loopback address";

inline bool HasIpv6() {
  asio::io_context io;
  asio::ip::udp::socket socket(io);
  asio::error_code error;
  socket.open(asio::ip::udp::v6(), error);
  if (!error) {
    socket.bind({asio::ip::address_v6::loopback(), 0}, error);
  }
  return !error;
}

}  // namespace slp::support
