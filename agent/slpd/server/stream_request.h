// One message to another agent by TCP, and its reply (RFC 2608 section 6.2). Nothing blocks. On the thread
// that runs the event loop.
#pragma once

#include <array>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <span>

#include "slpd/server/message_framer.h"
#include "wire/messages.h"

namespace slp {

class StreamRequest : public std::enable_shared_from_this<StreamRequest> {
 public:
  /// Takes the first message that comes back.
  using Reply = std::function<void(std::span<const std::uint8_t> message)>;

  /// Keeps itself alive until the reply is there, `limit` is over or something fails; then, or when Close was
  /// called, everything ends and `reply` is not called any more. What fails is not told: to the caller it is
  /// a reply that never comes.
  static std::shared_ptr<StreamRequest> Start(asio::io_context& io, const asio::ip::tcp::endpoint& local,
                                              const asio::ip::tcp::endpoint& peer, Bytes message,
                                              std::chrono::milliseconds limit, Reply reply);

  void Close();

 private:
  static constexpr std::size_t kChunk = 4096;

  StreamRequest(asio::io_context& io, Bytes message, Reply reply);
  void Connect(const asio::ip::tcp::endpoint& local, const asio::ip::tcp::endpoint& peer);
  void Write();
  void Read();

  asio::ip::tcp::socket socket_;
  asio::steady_timer deadline_;
  Bytes message_;
  Reply reply_;
  MessageFramer framer_;
  std::array<std::uint8_t, kChunk> chunk_{};
};

}  // namespace slp
