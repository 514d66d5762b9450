// What the sockets hand their messages to. Called by the thread that runs the event loop.
#pragma once

#include <asio/ip/address.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "slpd/request_origin.h"
#include "wire/messages.h"

namespace slp {

/// The other end of a message.
struct Sender {
  asio::ip::address address;
  asio::ip::address local;  ///< of the interface that the message came through
  Transport transport = Transport::kUdpUnicast;
  bool to_link = false;  ///< sent to a group of IPv6 that does not reach beyond the link
};

class MessageReceiver {
 public:
  virtual ~MessageReceiver() = default;

  /// How long a message that came by a stream, where nobody repeats it, has to wait until it can be answered;
  /// 0: not at all. Asked again when the wait is over.
  virtual std::chrono::milliseconds WaitBefore(std::span<const std::uint8_t> message,
                                               const Sender& sender) = 0;

  /// One message; the answer goes back to where it came from.
  virtual std::optional<Bytes> OnMessage(std::span<const std::uint8_t> message, const Sender& sender) = 0;

  /// Bytes that never became a message, or an answer that could not be sent, and why.
  virtual void OnDropped(std::string_view reason, std::size_t size, const Sender& sender) = 0;
};

}  // namespace slp
