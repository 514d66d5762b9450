// IP addresses as texts, of either version: what agents write into messages and URLs (RFC 2608 section 8.1,
// RFC 3111 section 3). Pure functions; any thread.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace slp {

/// The bytes of an IPv6 address without brackets, in any of its text forms (RFC 4291 section 2.2); a zone
/// behind it ("%eth0") says nothing here. None for anything else.
std::optional<std::array<std::uint8_t, 16>> ParseIpv6Address(std::string_view text);

/// An IPv4 address as IsIpv4Address takes it, or an IPv6 address.
bool IsIpAddress(std::string_view text);

/// Whether both are the same address, in whatever form; zones don't count.
bool SameIpAddress(std::string_view one, std::string_view other);

/// One of 127.0.0.0/8, or ::1.
bool IsLoopbackAddress(std::string_view address);

/// The address as it means the same on other hosts.
std::string_view WithoutZone(std::string_view address);

/// The address as the host of a URL: of IPv6 in brackets and without its zone.
std::string UrlHost(std::string_view address);

}  // namespace slp
