// What TCP peers may make the daemon hold. Connections are counted and their memory charged here, by peer and
// in all. One thread at a time.
#pragma once

#include <asio/ip/address.hpp>
#include <chrono>
#include <cstddef>
#include <map>

#include "wire/codec.h"

namespace slp {

/// Of what is limited in all, other hosts' peers have their part only, see OthersPart.
struct ConnectionLimits {
  std::size_t connections = 256;
  std::size_t connections_per_peer = 64;
  std::size_t bytes =
      std::size_t{256} * 1024 * 1024;  ///< of messages that are coming in and answers going out
  std::size_t bytes_per_peer = std::size_t{64} * 1024 * 1024;
  std::size_t message_bytes = kMaximumMessageLength;

  /// A connection without any message is closed after this (CONFIG_CLOSE_CONN, RFC 2608 section 13).
  std::chrono::milliseconds idle = std::chrono::minutes(5);
  /// From the first byte of a message to its last.
  std::chrono::milliseconds message = std::chrono::minutes(1);
  /// From the first byte of an answer to its last.
  std::chrono::milliseconds reply = std::chrono::minutes(1);
};

class ConnectionAccounts {
 public:
  explicit ConnectionAccounts(const ConnectionLimits& limits) : limits_(limits) {}

  const ConnectionLimits& limits() const { return limits_; }

  /// Whether there are so many that this peer may not have one more.
  bool FullFor(const asio::ip::address& peer) const;
  bool PeerFull(const asio::ip::address& peer) const;

  void Add(const asio::ip::address& peer);
  void Remove(const asio::ip::address& peer);

  /// A connection that held `before` bytes holds `now`. False, and nothing changes, when that is too much.
  [[nodiscard]] bool Charge(const asio::ip::address& peer, std::size_t before, std::size_t now);

  std::size_t connections() const { return connections_; }
  std::size_t bytes() const { return bytes_; }

 private:
  static std::size_t PartOf(const asio::ip::address& peer, std::size_t limit);

  struct Account {
    std::size_t connections = 0;
    std::size_t bytes = 0;
  };

  ConnectionLimits limits_;
  std::map<asio::ip::address, Account> peers_;
  std::size_t connections_ = 0;
  std::size_t bytes_ = 0;
};

}  // namespace slp
