// With select: WSAPoll does not report a refused connection before Windows 10 version 2004.
#include "net/native_socket.h"

#include <winsock2.h>

#include <algorithm>
#include <asio/error.hpp>

namespace slp {

NativeSocket OpenNativeSocket(int family, int type, int protocol, asio::error_code& error) {
  const SOCKET opened =
      ::WSASocketW(family, type, protocol, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
  error = opened == INVALID_SOCKET ? asio::error_code(WSAGetLastError(), asio::error::get_system_category())
                                   : asio::error_code();
  return opened;
}

void CloseNativeSocket(NativeSocket socket) {
  ::closesocket(socket);
}

// A socket is a handle.
void KeepFromStartedPrograms(NativeSocket socket) {
  ::SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
}

void WaitUntilReady(std::span<AwaitedSocket> sockets, std::chrono::milliseconds limit) {
  fd_set readable;
  fd_set writable;
  fd_set failed;
  FD_ZERO(&readable);
  FD_ZERO(&writable);
  FD_ZERO(&failed);
  // select takes FD_SETSIZE sockets; those beyond wait for the next call.
  for (const AwaitedSocket& awaited : sockets.first(std::min<std::size_t>(sockets.size(), FD_SETSIZE))) {
    FD_SET(awaited.socket, awaited.operation == AwaitedSocket::For::kReading ? &readable : &writable);
    FD_SET(awaited.socket, &failed);
  }
  const auto milliseconds = std::max<std::chrono::milliseconds::rep>(limit.count(), 0);
  timeval timeout{static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
  const bool any = ::select(0, &readable, &writable, &failed, &timeout) > 0;
  for (AwaitedSocket& awaited : sockets) {
    awaited.ready =
        any && (FD_ISSET(awaited.socket, &readable) != 0 || FD_ISSET(awaited.socket, &writable) != 0 ||
                FD_ISSET(awaited.socket, &failed) != 0);
  }
}

asio::error_code StartConnect(NativeSocket socket, const asio::ip::tcp::endpoint& peer) {
  if (::connect(socket, peer.data(), static_cast<int>(peer.size())) == 0) {
    return {};
  }
  const int code = WSAGetLastError();
  return code == WSAEWOULDBLOCK ? asio::error_code(asio::error::in_progress)
                                : asio::error_code(code, asio::error::get_system_category());
}

asio::error_code ConnectResult(NativeSocket socket) {
  int code = 0;
  int size = sizeof code;
  void* const destination = &code;
  if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, static_cast<char*>(destination), &size) != 0) {
    code = WSAGetLastError();
  }
  return {code, asio::error::get_system_category()};
}

}  // namespace slp
