// Where the daemon listens: the interfaces, port and groups that the configuration asks for. Pure functions;
// any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "net/interfaces.h"
#include "properties/properties.h"

namespace slp {

/// One address that is served over UDP and TCP.
struct ListenPlace {
  asio::ip::address address;
  std::string interface_name;
  bool group = false;                 ///< hears the SLP group, too; with IPv6 all of GroupsFor
  std::uint32_t interface_index = 0;  ///< as in Interface
  asio::ip::address netmask{};        ///< of the network that the address is in
  bool operator==(const ListenPlace&) const = default;
};

struct ListenPlan {
  std::vector<ListenPlace> places;
  std::uint16_t port = 427;
  int multicast_hops = 255;
  /// Where broadcast requests are sent to (RFC 2608 section 6.1); unspecified when only loopback is served.
  asio::ip::address broadcast;
  bool operator==(const ListenPlan&) const = default;
};

/// Steps:
/// 1. net.slp.interfaces selects the interfaces; empty: all that can multicast, and loopback.
/// 2. When it names none of the loopback network, 127.0.0.1 is served as well, without the group: the
///    applications of this host register there. (An agent that is confined to an address like 127.0.0.2 stays
///    confined to it.) With net.slp.useIPv6 the host's ::1 comes along.
/// 3. Of several IPv6 addresses of an interface one hears the groups, so that nobody gets two answers: the
///    first that reaches beyond the link, else the first.
/// 4. What is no address or interface of this host is told in `problems` and left out.
ListenPlan MakeListenPlan(const Properties& properties, const std::vector<Interface>& all,
                          std::vector<std::string>& problems);

}  // namespace slp
