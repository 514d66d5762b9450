// The fixed addresses of SLP (RFC 2608 section 6.1), and addresses from text. Any thread.
#pragma once

#include <asio/ip/address_v4.hpp>
#include <optional>
#include <string>

namespace slp {

/// The administratively scoped multicast group that requests and advertisements are sent to: 239.255.255.253.
inline const asio::ip::address_v4 kMulticastGroup{0xEFFFFFFDU};

/// Four decimal numbers with dots between, and nothing of the short forms that some systems read ("1.2.3").
std::optional<asio::ip::address_v4> ParseAddress(const std::string& text);

}  // namespace slp
