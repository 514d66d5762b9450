// Ports for daemons and peers of tests. Any thread.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <deque>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>

namespace slp::support {

/// Ports that belong to this process until it ends, also while it has nothing bound to them: a daemon may be
/// killed and started again, and nobody who looks for a free port gets its port meanwhile. They lie below the
/// range from which systems take ports by themselves.
class ReservedPorts {
 public:
  static ReservedPorts& Instance() {
    static ReservedPorts& instance = *new ReservedPorts;
    return instance;
  }

  /// A port that nobody has reserved and that nobody uses at `address` now, neither for UDP nor for TCP.
  std::uint16_t Take(const std::string& address) {
    const std::lock_guard guard(mutex_);
    for (int tries = 0; tries < kCount; ++tries) {
      const auto port = static_cast<std::uint16_t>(kFirst + next_);
      next_ = (next_ + 1) % kCount;
      if (Reserve(port)) {
        if (IsUnused(asio::ip::make_address(address), port)) {
          return port;
        }
        marks_.pop_back();
      }
    }
    throw std::runtime_error("no port is free");
  }

 private:
  static constexpr int kFirst = 20000;
  static constexpr int kCount = 6000;
  /// A place of the loopback network at which no test listens.
  static constexpr const char* kMarkAddress = "127.83.76.80";

  ReservedPorts() : next_(static_cast<int>(std::random_device()() % kCount)) {}

  // The mark of a reservation is a socket that is bound as many ports higher as there are to reserve, where
  // it is in nobody's way, and never listens. The system takes it away with the process.
  bool Reserve(std::uint16_t port) {
    asio::ip::tcp::acceptor mark(io_, asio::ip::tcp::v4());
    asio::error_code error;
    mark.bind({asio::ip::make_address(kMarkAddress), static_cast<std::uint16_t>(port + kCount)}, error);
    if (error) {
      return false;
    }
    marks_.push_back(std::move(mark));
    return true;
  }

  bool IsUnused(const asio::ip::address& address, std::uint16_t port) {
    asio::ip::tcp::acceptor stream(io_, asio::ip::tcp::v4());
    asio::ip::udp::socket datagrams(io_, asio::ip::udp::v4());
    asio::error_code error;
    stream.bind({address, port}, error);
    if (!error) {
      datagrams.bind({address, port}, error);
    }
    return !error;
  }

  std::mutex mutex_;
  asio::io_context io_;
  std::deque<asio::ip::tcp::acceptor> marks_;
  int next_;
};

/// A port for this process alone; see ReservedPorts.
inline std::uint16_t FreePort(const std::string& address = "127.0.0.1") {
  return ReservedPorts::Instance().Take(address);
}

}  // namespace slp::support
