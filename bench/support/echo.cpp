#include "bench/support/echo.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <vector>

namespace bench {
namespace {

/// `result` of a system call, unless it says that the call failed.
template <typename Result>
Result Checked(Result result, const char* call) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), call);
  }
  return result;
}

// As the daemon does: waits for many sockets, and reads until there is nothing more.
void Echo(int socket, int lifeline) {
  const int waiter = Checked(::epoll_create1(0), "epoll_create1");
  for (const int descriptor : {socket, lifeline}) {
    epoll_event wanted{};
    wanted.events = descriptor == socket ? EPOLLIN | EPOLLET : EPOLLIN;
    wanted.data.fd = descriptor;
    Checked(::epoll_ctl(waiter, EPOLL_CTL_ADD, descriptor, &wanted), "epoll_ctl");
  }
  std::vector<char> buffer(65536);
  while (true) {
    epoll_event event{};
    if (::epoll_wait(waiter, &event, 1, -1) == 1 && event.data.fd == lifeline) {
      return;
    }
    asio::ip::udp::endpoint sender;
    auto length = static_cast<socklen_t>(sender.capacity());
    ssize_t size = 0;
    while ((size = ::recvfrom(socket, buffer.data(), buffer.size(), MSG_DONTWAIT, sender.data(), &length)) >=
           0) {
      Checked(::sendto(socket, buffer.data(), static_cast<std::size_t>(size), 0, sender.data(), length),
              "sendto");
    }
  }
}

}  // namespace

EchoProcess::EchoProcess() : address_(asio::ip::address_v4::loopback(), 0) {
  const int server = Checked(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket");
  Checked(::bind(server, address_.data(), static_cast<socklen_t>(address_.size())), "bind");
  auto length = static_cast<socklen_t>(address_.capacity());
  Checked(::getsockname(server, address_.data(), &length), "getsockname");
  std::array<int, 2> ends{};
  Checked(::pipe2(ends.data(), O_CLOEXEC), "pipe2");
  process_ = Checked(::fork(), "fork");
  if (process_ == 0) {
    ::close(ends[1]);
    try {
      Echo(server, ends[0]);
    } catch (const std::system_error&) {
      ::_exit(1);  // whoever asks finds out by getting no answer
    }
    ::_exit(0);
  }
  lifeline_ = ends[1];
  ::close(ends[0]);
  ::close(server);
}

EchoProcess::~EchoProcess() {
  ::close(lifeline_);
  ::waitpid(process_, nullptr, 0);
}

Latencies EchoProcess::TimeRoundTrips(std::size_t count, std::size_t bytes) const {
  Latencies latencies;
  std::vector<char> buffer(bytes, 'x');
  for (std::size_t i = 0; i < count; ++i) {
    latencies.Time([&] {
      const int socket = Checked(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket");
      Checked(::connect(socket, address_.data(), static_cast<socklen_t>(address_.size())), "connect");
      Checked(::send(socket, buffer.data(), buffer.size(), 0), "send");
      Checked(::recv(socket, buffer.data(), buffer.size(), 0), "recv");
      ::close(socket);
    });
  }
  return latencies;
}

}  // namespace bench
