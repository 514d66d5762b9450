// One TCP connection: reads messages, answers them one after the other, and takes in nothing new while an
// answer is still on its way, so that a peer that doesn't read can't pile anything up. On the thread that
// runs the event loop.
#pragma once

#include <array>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

#include "slpd/server/connection_limits.h"
#include "slpd/server/message_framer.h"
#include "slpd/server/message_receiver.h"

namespace slp {

class PeerConnection : public std::enable_shared_from_this<PeerConnection> {
 public:
  using Closed = std::function<void(PeerConnection&)>;

  /// `receiver` and `accounts` outlive the connection or its Close; `closed` is called once, when it ends by
  /// itself.
  PeerConnection(asio::ip::tcp::socket socket, const Sender& sender, MessageReceiver& receiver,
                 ConnectionAccounts& accounts, Closed closed);

  void Start();

  /// Ends the connection; afterwards nothing that was handed in is called any more.
  void Close();

  /// Since when it waits for a message of which nothing has come; none while it is in the middle of
  /// something.
  std::optional<std::chrono::steady_clock::time_point> idle_since() const { return idle_since_; }

 private:
  static constexpr std::size_t kChunk = 16384;

  void Read();
  void OnRead(const asio::error_code& error, std::size_t size);
  void Next();
  void Answer(std::span<const std::uint8_t> message);
  void OnWritten(const asio::error_code& error);
  bool Charge();
  void WaitAtMost(std::chrono::milliseconds time, std::string_view reason);
  void End(std::string_view reason);

  asio::ip::tcp::socket socket_;
  asio::steady_timer deadline_;
  Sender sender_;
  MessageReceiver* receiver_;
  ConnectionAccounts* accounts_;
  Closed closed_;
  MessageFramer framer_;
  Bytes reply_;
  std::size_t charged_ = 0;
  bool last_ = false;
  bool in_message_ = false;
  std::optional<std::chrono::steady_clock::time_point> idle_since_;
  std::array<std::uint8_t, kChunk> chunk_{};
};

}  // namespace slp
