// A client that asks for its service all the time, by datagrams and now and then over TCP, and keeps count of
// how that goes. It runs on a thread of its own; its figures are read when it has ended.
#pragma once

#include <asio/ip/address_v4.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <optional>
#include <thread>
#include <vector>

#include "wire/messages.h"

namespace slp {

/// Sends a datagram and takes the reply with the same transaction id; none when there is none within `limit`.
/// One thread at a time.
std::optional<Message> AskOverUdp(const asio::ip::udp::endpoint& where, const Bytes& request,
                                  std::chrono::milliseconds limit);

class GoodClient {
 public:
  /// Registers the service that it asks for.
  explicit GoodClient(std::uint16_t port);
  ~GoodClient() { Stop(); }

  void Stop();

  std::size_t requests() const { return latencies_.size() + errors_; }

  /// Requests that had no right answer in three tries of a second.
  std::size_t errors() const { return errors_; }

  /// Requests that had it at the second or third try.
  std::size_t repeated() const { return repeated_; }

  /// The time within which so much of the requests was answered, 1.0: all of them.
  std::chrono::microseconds Latency(double share) const;

 private:
  void Run();
  bool FindByUdp() const;
  bool FindByTcp() const;

  const std::uint16_t port_;
  std::atomic<bool> stop_{false};
  std::vector<std::chrono::microseconds> latencies_;
  std::size_t errors_ = 0;
  std::size_t repeated_ = 0;
  std::thread thread_;
};

}  // namespace slp
