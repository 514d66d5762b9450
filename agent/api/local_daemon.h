// The way to the daemon of this host. Any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <vector>

#include "api/request_context.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// Where the daemon of this host may listen, the likeliest place first.
std::vector<asio::ip::address> LocalDaemonAddresses(const RequestSettings& settings);

/// Sends a registration or deregistration to the daemon and returns what it acknowledged.
/// SLP_NETWORK_INIT_FAILED when none listens on this host.
SLPError AskLocalDaemon(const Message& request, const RequestContext& context);

}  // namespace slp::client
