// The part that every platform shares.
#include "net/unicast_socket.h"

#include <asio/detail/socket_types.hpp>
#include <utility>

namespace slp {
namespace {

// No datagram is longer.
constexpr std::size_t kBufferSize = 65536;
constexpr NativeSocket kNoSocket = asio::detail::invalid_socket;

}  // namespace

std::optional<UnicastSocket> UnicastSocket::ConnectedTo(const asio::ip::udp::endpoint& peer) {
  UnicastSocket opened(Open(peer.protocol().family()));
  const bool ready = opened.socket_ != kNoSocket && Connect(opened.socket_, peer);
  return ready ? std::optional(std::move(opened)) : std::nullopt;
}

UnicastSocket::UnicastSocket(UnicastSocket&& other) noexcept
    : socket_(std::exchange(other.socket_, kNoSocket)), buffer_(std::move(other.buffer_)) {}

UnicastSocket::~UnicastSocket() {
  if (socket_ != kNoSocket) {
    CloseNativeSocket(socket_);
  }
}

bool UnicastSocket::Send(std::span<const std::uint8_t> bytes) {
  Outcome outcome = SendOnce(bytes);
  if (outcome == Outcome::kRefused) {
    outcome = SendOnce(bytes);
  }
  return outcome == Outcome::kDone || outcome == Outcome::kRefused;
}

UnicastSocket::Received UnicastSocket::Receive(std::span<const std::uint8_t>& bytes) {
  if (!buffer_) {
    buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(kBufferSize);
  }
  std::size_t size = 0;
  switch (ReceiveOnce({buffer_.get(), kBufferSize}, size)) {
    case Outcome::kDone:
      bytes = {buffer_.get(), size};
      return Received::kDatagram;
    case Outcome::kWouldBlock:
      return Received::kNothing;
    case Outcome::kRefused:
      return Received::kRefused;
    case Outcome::kFailed:
      break;
  }
  return Received::kFailed;
}

}  // namespace slp
