#include "net/unicast_socket.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>

namespace slp {
namespace {

template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

}  // namespace

NativeSocket UnicastSocket::Open(int family) {
  asio::error_code ignored;
  return OpenNativeSocket(family, SOCK_DGRAM | SOCK_NONBLOCK, IPPROTO_UDP, ignored);
}

bool UnicastSocket::Connect(NativeSocket socket, const asio::ip::udp::endpoint& peer) {
  return Uninterrupted([&] { return ::connect(socket, peer.data(), static_cast<socklen_t>(peer.size())); }) ==
         0;
}

UnicastSocket::Outcome UnicastSocket::SendOnce(std::span<const std::uint8_t> bytes) {
  return Uninterrupted([&] { return ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }) >= 0
             ? Outcome::kDone
             : LastOutcome();
}

UnicastSocket::Outcome UnicastSocket::ReceiveOnce(std::span<std::uint8_t> buffer, std::size_t& size) {
  const auto received = Uninterrupted([&] { return ::recv(socket_, buffer.data(), buffer.size(), 0); });
  if (received < 0) {
    return LastOutcome();
  }
  size = static_cast<std::size_t>(received);
  return Outcome::kDone;
}

UnicastSocket::Outcome UnicastSocket::LastOutcome() {
  switch (errno) {
    case EAGAIN:
      return Outcome::kWouldBlock;
    case ECONNREFUSED:
    case ECONNRESET:
    case EHOSTUNREACH:
      return Outcome::kRefused;
    default:
      return Outcome::kFailed;
  }
}

}  // namespace slp
