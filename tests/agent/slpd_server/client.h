// The other side for the tests of this folder: plain blocking requests over UDP, each with a time limit.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/error.h"
#include "wire/messages.h"

namespace slp {

/// Sends the bytes and returns the reply; none when none came within `limit_ms`.
std::optional<Bytes> AskUdp(const asio::ip::udp::endpoint& where, const Bytes& request, int limit_ms = 5000);

/// As AskUdp, to a multicast group by way of the loopback interface; the sender of the reply in `replier`.
std::optional<Bytes> AskGroup(const asio::ip::udp::endpoint& group, const Bytes& request,
                              asio::ip::udp::endpoint& replier, int limit_ms = 5000);

/// The index of the loopback interface; 0 without IPv6.
std::uint32_t LoopbackIndex();

/// One more member of a multicast group on the loopback interface, which hears what is sent to it.
class GroupListener {
 public:
  explicit GroupListener(const asio::ip::udp::endpoint& group);

  /// The next datagram; none when none comes within `limit_ms`.
  std::optional<Bytes> Receive(int limit_ms);

 private:
  asio::io_context io_;
  asio::ip::udp::socket socket_{io_};
};

/// A TCP connection; each receive has a time limit of half a minute.
class TcpClient {
 public:
  /// From `source`, so that a test can be several peers.
  explicit TcpClient(const asio::ip::tcp::endpoint& where, const std::string& source = "127.0.0.1");

  /// Whether all could be sent.
  bool Send(const Bytes& bytes);

  /// The next whole message; none when the connection ends before, or nothing comes.
  std::optional<Bytes> Receive();

  /// Whether the other side ends the connection (or has) without sending any more.
  bool IsClosed();

 private:
  std::size_t Read(std::uint8_t* to, std::size_t size, asio::error_code& error);

  asio::io_context io_;
  asio::ip::tcp::socket socket_{io_};
};

/// The URLs that a SrvRqst finds, sorted.
std::vector<std::string> FindServices(const asio::ip::udp::endpoint& where, const std::string& type);

/// What the agent answers to a fresh registration, bound to a process unless `process_id` is 0.
Error Register(const asio::ip::udp::endpoint& where, const std::string& url, std::uint16_t lifetime,
               std::uint32_t process_id = 0);

}  // namespace slp
