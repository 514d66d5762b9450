// The way to the daemon of this host. Any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <cstddef>
#include <optional>
#include <vector>

#include "api/request_context.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// Where the daemon of this host may listen, the likeliest place first. Most often that is the right one, and
/// the host's interfaces are not even listed.
class LocalDaemonAddresses {
 public:
  /// `settings` must outlive it.
  explicit LocalDaemonAddresses(const RequestSettings& settings) : settings_(settings) {}

  /// None when all have been told.
  std::optional<asio::ip::address> Next();

 private:
  const RequestSettings& settings_;
  std::vector<asio::ip::address> addresses_;
  std::size_t told_ = 0;
};

/// Sends a registration or deregistration to the daemon and returns what it acknowledged.
/// SLP_NETWORK_INIT_FAILED when none listens on this host.
SLPError AskLocalDaemon(const Message& request, const RequestContext& context);

}  // namespace slp::client
