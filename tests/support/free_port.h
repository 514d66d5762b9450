// Ports for daemons and peers of tests. Any thread.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <string>

namespace slp::support {

/// A port of `address` that nobody uses at the moment, neither for UDP nor for TCP.
inline std::uint16_t FreePort(const std::string& address = "127.0.0.1") {
  asio::io_context io;
  const auto ip = asio::ip::make_address(address);
  for (;;) {
    const asio::ip::tcp::acceptor stream(io, {ip, 0}, false);
    const std::uint16_t port = stream.local_endpoint().port();
    asio::ip::udp::socket datagrams(io, asio::ip::udp::v4());
    asio::error_code error;
    datagrams.bind({ip, port}, error);
    if (!error) {
      return port;
    }
  }
}

}  // namespace slp::support
