// Where a message came from, as the sockets saw it. Values; any thread.
#pragma once

#include <string>

namespace slp {

enum class Transport {
  kUdpUnicast,
  kUdpMulticast,  ///< to the group or to a broadcast address
  kTcp,
};

struct RequestOrigin {
  std::string address;    ///< the sender's, numeric, without port
  bool own_host = false;  ///< the sender runs on this machine
  bool own_network =
      false;  ///< the sender stands in a network of one of the own interfaces; true with own_host
  Transport transport = Transport::kUdpUnicast;

  /// The own address that the sender reaches this agent at, for the URL of an advertisement. Empty: the first
  /// of AgentSettings::own_addresses.
  std::string local_address;

  /// Whether a UDP sender beyond the own networks may be sent more bytes than it has sent.
  bool trusted_network = false;

  /// A sender by IPv6 that may stand on another link, where the addresses of this one mean nothing (RFC 3111
  /// section 4.2.3).
  bool beyond_link = false;
};

}  // namespace slp
