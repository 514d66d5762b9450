// The fixed addresses of SLP (RFC 2608 section 6.1). Constants; any thread.
#pragma once

#include <asio/ip/address_v4.hpp>

namespace slp {

/// The administratively scoped multicast group that requests and advertisements are sent to: 239.255.255.253.
inline const asio::ip::address_v4 kMulticastGroup{0xEFFFFFFDU};

}  // namespace slp
