#include "integration/hostile/hostile_streams.h"

#include <asio/buffer.hpp>
#include <asio/ip/address_v4.hpp>
#include <asio/write.hpp>

namespace slp {
namespace {

/// Fewer than one peer may have, so that the good client, which has the same address, gets its turn.
constexpr std::size_t kLeftOpen = 40;

}  // namespace

Bytes HostileStreams::BrokenStream() {
  Bytes stream;
  switch (mutator_.Below(5)) {
    case 0: {
      // Many messages at once, whose answers nobody fetches.
      for (int i = 0; i < 50; ++i) {
        const Bytes message = mutator_.Next();
        stream.insert(stream.end(), message.begin(), message.end());
      }
      break;
    }
    case 1:
      stream = mutator_.Next();
      stream.resize(mutator_.Below(stream.size() + 1));
      break;
    case 2:
      stream = {2, 1, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 1, 0, 2, 'e', 'n'};
      stream.resize(16 + mutator_.Below(4096));
      break;
    case 3:
      stream.resize(mutator_.Below(300));
      for (std::uint8_t& byte : stream) {
        byte = static_cast<std::uint8_t>(mutator_.Below(256));
      }
      break;
    default:
      stream = mutator_.NextRegistration();
      break;
  }
  return stream;
}

void HostileStreams::MakeOne() {
  asio::ip::tcp::socket socket(io_);
  asio::error_code error;
  socket.connect({asio::ip::address_v4::loopback(), port_}, error);
  if (error) {
    ++refused_;
    return;
  }
  asio::write(socket, asio::buffer(BrokenStream()), error);
  switch (mutator_.Below(4)) {
    case 0:
      socket.set_option(asio::socket_base::linger(true, 0), error);
      break;
    case 1:
      socket.shutdown(asio::ip::tcp::socket::shutdown_send, error);
      [[fallthrough]];
    case 2:
      left_open_.push_back(std::move(socket));
      break;
    default:
      break;
  }
  while (left_open_.size() > kLeftOpen) {
    left_open_.pop_front();
  }
}

}  // namespace slp
