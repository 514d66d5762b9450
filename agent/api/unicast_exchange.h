// One request to one agent (RFC 2608 section 12.3). Blocks, at most net.slp.unicastMaximumWait. Any thread.
#pragma once

#include <asio/ip/address.hpp>

#include "api/exchange.h"
#include "api/request_context.h"

namespace slp::client {

/// Sends `request` to `peer` at net.slp.port: by datagrams, repeated by net.slp.unicastTimeouts, or by TCP
/// when it is longer than net.slp.MTU or the reply says that it has been cut. What is no reply of that agent
/// to this request is passed over. An agent that is busy counts as one that has not answered yet.
Exchange ExchangeWith(const asio::ip::address& peer, const Message& request, const RequestContext& context);

}  // namespace slp::client
