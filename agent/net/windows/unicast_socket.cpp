#include "net/unicast_socket.h"

#include <winsock2.h>

namespace slp {
namespace {

/// What the socket functions take for bytes.
const char* Chars(std::span<const std::uint8_t> bytes) {
  const void* const start = bytes.data();
  return static_cast<const char*>(start);
}

char* Chars(std::span<std::uint8_t> bytes) {
  void* const start = bytes.data();
  return static_cast<char*>(start);
}

}  // namespace

NativeSocket UnicastSocket::Open(int family) {
  asio::error_code ignored;
  return OpenNativeSocket(family, SOCK_DGRAM, IPPROTO_UDP, ignored);
}

bool UnicastSocket::Connect(NativeSocket socket, const asio::ip::udp::endpoint& peer) {
  u_long non_blocking = 1;
  return ::ioctlsocket(socket, static_cast<long>(FIONBIO), &non_blocking) == 0 &&
         ::connect(socket, peer.data(), static_cast<int>(peer.size())) == 0;
}

UnicastSocket::Outcome UnicastSocket::SendOnce(std::span<const std::uint8_t> bytes) {
  return ::send(socket_, Chars(bytes), static_cast<int>(bytes.size()), 0) == SOCKET_ERROR ? LastOutcome()
                                                                                          : Outcome::kDone;
}

UnicastSocket::Outcome UnicastSocket::ReceiveOnce(std::span<std::uint8_t> buffer, std::size_t& size) {
  const int received = ::recv(socket_, Chars(buffer), static_cast<int>(buffer.size()), 0);
  if (received == SOCKET_ERROR) {
    return LastOutcome();
  }
  size = static_cast<std::size_t>(received);
  return Outcome::kDone;
}

UnicastSocket::Outcome UnicastSocket::LastOutcome() {
  switch (WSAGetLastError()) {
    case WSAEWOULDBLOCK:
      return Outcome::kWouldBlock;
    // A port that nobody listens on is reported as a reset of the connection, a way that is too long for a
    // datagram as one of the network.
    case WSAECONNREFUSED:
    case WSAECONNRESET:
    case WSAENETRESET:
    case WSAEHOSTUNREACH:
      return Outcome::kRefused;
    default:
      return Outcome::kFailed;
  }
}

}  // namespace slp
