#include "net/datagram_socket.h"

#include <asio/buffer.hpp>
#include <asio/ip/multicast.hpp>
#include <asio/ip/v6_only.hpp>
#include <asio/socket_base.hpp>

namespace slp {
namespace {

constexpr std::size_t kLargestDatagram = 65536;

/// Runs the steps, each of which takes the error to set, until one fails.
template <typename... Steps>
bool Succeeds(Steps... steps) {
  asio::error_code error;
  return ((steps(error), !error) && ...);
}

bool IsRefusal(const asio::error_code& error) {
  // Windows reports a port that nobody listens on as a reset of the connection, and a way that is too long
  // for a datagram as one of the network.
  return error == asio::error::connection_refused || error == asio::error::connection_reset ||
         error == asio::error::network_reset || error == asio::error::host_unreachable;
}

}  // namespace

std::optional<DatagramSocket> DatagramSocket::ForMulticast(asio::io_context& context,
                                                           const asio::ip::address_v4& local, int ttl) {
  DatagramSocket opened(context);
  asio::ip::udp::socket& socket = opened.socket_;
  const bool ready =
      Succeeds([&](auto& error) { error = OpenUninherited(socket, asio::ip::udp::v4()); },
               [&](auto& error) {
                 socket.bind({local, 0}, error);
               },
               [&](auto& error) { socket.set_option(asio::ip::multicast::outbound_interface(local), error); },
               [&](auto& error) { socket.set_option(asio::ip::multicast::hops(ttl), error); },
               [&](auto& error) { socket.set_option(asio::ip::multicast::enable_loopback(true), error); },
               [&](auto& error) { socket.non_blocking(true, error); });
  return ready ? std::optional(std::move(opened)) : std::nullopt;
}

std::optional<DatagramSocket> DatagramSocket::ForIpv6Multicast(asio::io_context& context,
                                                               std::uint32_t interface_index, int ttl) {
  DatagramSocket opened(context);
  asio::ip::udp::socket& socket = opened.socket_;
  const bool ready =
      Succeeds([&](auto& error) { error = OpenUninherited(socket, asio::ip::udp::v6()); },
               [&](auto& error) { socket.set_option(asio::ip::v6_only(true), error); },
               [&](auto& error) {
                 socket.bind({asio::ip::address_v6::any(), 0}, error);
               },
               [&](auto& error) {
                 socket.set_option(asio::ip::multicast::outbound_interface(interface_index), error);
               },
               [&](auto& error) { socket.set_option(asio::ip::multicast::hops(ttl), error); },
               [&](auto& error) { socket.set_option(asio::ip::multicast::enable_loopback(true), error); },
               [&](auto& error) { socket.non_blocking(true, error); });
  return ready ? std::optional(std::move(opened)) : std::nullopt;
}

std::optional<DatagramSocket> DatagramSocket::ForBroadcast(asio::io_context& context,
                                                           const asio::ip::address_v4& local) {
  DatagramSocket opened(context);
  asio::ip::udp::socket& socket = opened.socket_;
  const bool ready =
      Succeeds([&](auto& error) { error = OpenUninherited(socket, asio::ip::udp::v4()); },
               [&](auto& error) {
                 socket.bind({local, 0}, error);
               },
               [&](auto& error) { socket.set_option(asio::socket_base::broadcast(true), error); },
               [&](auto& error) { socket.non_blocking(true, error); });
  return ready ? std::optional(std::move(opened)) : std::nullopt;
}

bool DatagramSocket::SendTo(std::span<const std::uint8_t> bytes, const asio::ip::udp::endpoint& to) {
  asio::error_code error;
  socket_.send_to(asio::buffer(bytes.data(), bytes.size()), to, 0, error);
  return !error;
}

DatagramSocket::Received DatagramSocket::Receive(Datagram& datagram) {
  datagram.bytes.resize(kLargestDatagram);
  asio::error_code error;
  const std::size_t size = socket_.receive_from(asio::buffer(datagram.bytes), datagram.from, 0, error);
  datagram.bytes.resize(error ? 0 : size);
  if (!error) {
    return Received::kDatagram;
  }
  if (error == asio::error::would_block || error == asio::error::try_again) {
    return Received::kNothing;
  }
  return IsRefusal(error) ? Received::kRefused : Received::kFailed;
}

}  // namespace slp
