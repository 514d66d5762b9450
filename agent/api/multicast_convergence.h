// A search that is multicast until nobody new answers (RFC 2608 section 6.3). Blocks, at most
// net.slp.multicastMaximumWait. Any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <functional>
#include <string>
#include <vector>

#include "api/request_context.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// Takes one reply, as soon as it is there; false: no more is wanted.
using ReplySink = std::function<bool(const Message&)>;

/// The same, with the address that the reply came from.
using SenderSink = std::function<bool(const Message& reply, const asio::ip::address& sender)>;

/// A request that goes along with a search, because it asks for something else by the way. Who answers it is
/// no responder, and prolongs nothing.
struct Companion {
  Message request;  ///< with another XID than the search's
  std::function<void(const Message& reply, const asio::ip::address& sender)> on_reply;
};

/// Sends `request` to all agents by the interfaces that the handle or net.slp.interfaces names, and hands
/// what they reply to `sink` on the calling thread. Replies that report an error are passed over (RFC 2608
/// section 7). SLP_OK, also when nobody answers; SLP_NETWORK_INIT_FAILED without an interface,
/// SLP_NETWORK_ERROR when none of them takes the request, SLP_BUFFER_OVERFLOW when it is longer than
/// net.slp.MTU.
SLPError Converge(const Message& request, const RequestContext& context, const SenderSink& sink,
                  const Companion* companion = nullptr);
SLPError Converge(const Message& request, const RequestContext& context, const ReplySink& sink,
                  const Companion* companion = nullptr);

}  // namespace slp::client
