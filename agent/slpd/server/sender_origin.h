// What a sender's address says of it, by the interfaces of this host. A pure function; any thread.
#pragma once

#include <vector>

#include "net/interfaces.h"
#include "net/network_list.h"
#include "slpd/request_origin.h"
#include "slpd/server/message_receiver.h"

namespace slp {

/// Where a message of `sender` came from. The system keeps out datagrams of other hosts that claim an IPv4
/// address of this one, or a loopback address, but not those that claim another IPv6 address of it: a
/// datagram from such an address counts as one of the own networks only. By TCP nobody can claim it.
RequestOrigin OriginOf(const Sender& sender, const std::vector<Interface>& interfaces,
                       const NetworkList& trusted_networks);

}  // namespace slp
