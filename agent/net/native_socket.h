// Opening sockets that started programs do not inherit, which Asio doesn't offer, and waiting for sockets and
// connecting without blocking, which it offers only together with its event loop. Any thread, one socket at a
// time. The implementations stand in posix/ and windows/.
#pragma once

#include <asio/detail/socket_types.hpp>
#include <asio/error_code.hpp>
#include <asio/ip/tcp.hpp>
#include <chrono>
#include <span>

namespace slp {

/// A descriptor or SOCKET; what native_handle() of every kind of Asio socket converts to.
using NativeSocket = asio::detail::socket_type;

/// A new socket, invalid_socket with `error` set when there is none. No program that this process starts
/// inherits it, from whatever thread: it would keep the port in use.
NativeSocket OpenNativeSocket(int family, int type, int protocol, asio::error_code& error);

void CloseNativeSocket(NativeSocket socket);

/// The same for a socket that Asio has made, such as an accepted one. A program that another thread starts
/// before it may still inherit it.
void KeepFromStartedPrograms(NativeSocket socket);

/// Opens an Asio socket or acceptor as its open() does, and so that no started program inherits it.
template <typename Socket, typename Protocol>
asio::error_code OpenUninherited(Socket& socket, const Protocol& protocol) {
  asio::error_code error;
  const NativeSocket opened =
      OpenNativeSocket(protocol.family(), protocol.type(), protocol.protocol(), error);
  if (error) {
    return error;
  }
  socket.assign(protocol, opened, error);
  if (error) {
    CloseNativeSocket(opened);
  }
  return error;
}

struct AwaitedSocket {
  enum class For { kReading, kWriting };

  NativeSocket socket;
  For operation = For::kReading;
  bool ready = false;  ///< the operation would not block now, be it because it would fail
};

/// Blocks until one of `sockets` is ready or `limit` has passed, and marks those that are. May return early
/// with none ready, after a signal for instance.
void WaitUntilReady(std::span<AwaitedSocket> sockets, std::chrono::milliseconds limit);

/// The same for one socket; whether it is ready.
bool WaitUntilReady(NativeSocket socket, AwaitedSocket::For operation, std::chrono::milliseconds limit);

/// Starts to connect a non-blocking socket. asio::error::in_progress: wait until it is ready for writing,
/// then ask ConnectResult.
asio::error_code StartConnect(NativeSocket socket, const asio::ip::tcp::endpoint& peer);

asio::error_code ConnectResult(NativeSocket socket);

}  // namespace slp
