#include "bench/support/echo.h"

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <thread>
#include <vector>

namespace bench {
namespace {

using asio::ip::udp;

// Sends `count` datagrams back, then ends.
void Echo(udp::socket& socket, std::size_t count, std::size_t bytes) {
  std::vector<char> buffer(bytes);
  for (std::size_t i = 0; i < count; ++i) {
    udp::endpoint sender;
    const std::size_t size = socket.receive_from(asio::buffer(buffer), sender);
    socket.send_to(asio::buffer(buffer, size), sender);
  }
}

}  // namespace

Latencies TimeBareRoundTrips(std::size_t count, std::size_t bytes) {
  asio::io_context io;
  udp::socket server(io, udp::endpoint(asio::ip::address_v4::loopback(), 0));
  const udp::endpoint address = server.local_endpoint();
  std::thread echo([&] { Echo(server, count, bytes); });
  Latencies latencies;
  std::vector<char> buffer(bytes, 'x');
  for (std::size_t i = 0; i < count; ++i) {
    latencies.Time([&] {
      udp::socket socket(io, udp::v4());
      socket.connect(address);
      socket.send(asio::buffer(buffer));
      socket.receive(asio::buffer(buffer));
    });
  }
  echo.join();
  return latencies;
}

}  // namespace bench
