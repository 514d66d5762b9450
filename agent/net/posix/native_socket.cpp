// With poll and errno.
#include "net/native_socket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <asio/error.hpp>
#include <cerrno>
#include <limits>
#include <vector>

namespace slp {

NativeSocket OpenNativeSocket(int family, int type, int protocol, asio::error_code& error) {
  const int opened = ::socket(family, type | SOCK_CLOEXEC, protocol);
  error = opened < 0 ? asio::error_code(errno, asio::error::get_system_category()) : asio::error_code();
  return opened;
}

void CloseNativeSocket(NativeSocket socket) {
  ::close(socket);
}

void KeepFromStartedPrograms(NativeSocket socket) {
  static_cast<void>(::fcntl(socket, F_SETFD, FD_CLOEXEC));
}

void WaitUntilReady(std::span<AwaitedSocket> sockets, std::chrono::milliseconds limit) {
  std::vector<pollfd> polled;
  polled.reserve(sockets.size());
  for (const AwaitedSocket& awaited : sockets) {
    const bool reading = awaited.operation == AwaitedSocket::For::kReading;
    polled.push_back({awaited.socket, static_cast<short>(reading ? POLLIN : POLLOUT), 0});
  }
  const auto timeout =
      std::clamp<std::chrono::milliseconds::rep>(limit.count(), 0, std::numeric_limits<int>::max());
  const bool any = ::poll(polled.data(), polled.size(), static_cast<int>(timeout)) > 0;
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    sockets[i].ready = any && polled[i].revents != 0;
  }
}

asio::error_code StartConnect(NativeSocket socket, const asio::ip::tcp::endpoint& peer) {
  if (::connect(socket, peer.data(), static_cast<socklen_t>(peer.size())) == 0) {
    return {};
  }
  // A connect that a signal has interrupted goes on by itself (POSIX connect).
  return errno == EINPROGRESS || errno == EINTR ? asio::error_code(asio::error::in_progress)
                                                : asio::error_code(errno, asio::error::get_system_category());
}

asio::error_code ConnectResult(NativeSocket socket) {
  int code = 0;
  socklen_t size = sizeof code;
  if (::getsockopt(socket, SOL_SOCKET, SO_ERROR, &code, &size) != 0) {
    code = errno;
  }
  return {code, asio::error::get_system_category()};
}

}  // namespace slp
