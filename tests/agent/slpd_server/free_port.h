// A port of 127.0.0.1 that nobody uses at the moment, neither for UDP nor for TCP.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>

namespace slp {

inline std::uint16_t FreePort() {
  asio::io_context io;
  for (;;) {
    const asio::ip::tcp::acceptor stream(io, {asio::ip::address_v4::loopback(), 0}, false);
    const std::uint16_t port = stream.local_endpoint().port();
    asio::ip::udp::socket datagrams(io, asio::ip::udp::v4());
    asio::error_code error;
    datagrams.bind({asio::ip::address_v4::loopback(), port}, error);
    if (!error) {
      return port;
    }
  }
}

}  // namespace slp
