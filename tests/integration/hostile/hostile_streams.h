// TCP connections that no proper client makes. One thread at a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <deque>

#include "support/message_mutator/message_mutator.h"

namespace slp {

class HostileStreams {
 public:
  HostileStreams(std::uint16_t port, std::uint32_t seed) : port_(port), mutator_(seed) {}

  /// Makes one connection and damages it in one of several ways: cut, reset, random, announcing megabytes
  /// that never come, fetching no answer, left open in the midst of a message.
  void MakeOne();

  /// Connections that the daemon did not take any more.
  std::size_t refused() const { return refused_; }

 private:
  Bytes BrokenStream();

  const std::uint16_t port_;
  support::MessageMutator mutator_;
  asio::io_context io_;
  std::deque<asio::ip::tcp::socket> left_open_;
  std::size_t refused_ = 0;
};

}  // namespace slp
