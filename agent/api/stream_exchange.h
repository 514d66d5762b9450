// One request and its reply over TCP (RFC 2608 section 6.2). Blocks until the reply is there, the connection
// fails or the deadline passes. Any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <cstdint>
#include <span>

#include "api/exchange.h"
#include "net/deadline.h"

namespace slp::client {

struct StreamPeer {
  asio::ip::address address;
  std::uint16_t port;
};

/// `encoded` is `request` as bytes. Messages on the connection that are not the reply are passed over.
Exchange ExchangeByStream(const StreamPeer& peer, const Message& request,
                          std::span<const std::uint8_t> encoded, const Deadline& deadline);

}  // namespace slp::client
