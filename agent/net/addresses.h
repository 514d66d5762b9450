// The fixed addresses of SLP (RFC 2608 section 6.1, RFC 3111 section 4.1), and addresses from text. Any
// thread.
#pragma once

#include <asio/ip/address.hpp>
#include <asio/ip/address_v4.hpp>
#include <asio/ip/address_v6.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace slp {

/// The administratively scoped multicast group that requests and advertisements are sent to: 239.255.255.253.
inline const asio::ip::address_v4 kMulticastGroup{0xEFFFFFFDU};

/// How far a group of IPv6 reaches (RFC 4291 section 2.7).
enum class GroupReach : std::uint8_t { kLink = 2, kSite = 5 };

/// The groups of IPv6 by their last 32 bits (RFC 3111 section 4.1).
inline constexpr std::uint32_t kAgentsGroup = 0x116;
inline constexpr std::uint32_t kDirectoryAgentsGroup =
    0x123;                                                  ///< searches for these and their advertisements
inline constexpr std::uint32_t kTypeGroupsBegin = 0x11000;  ///< and up: requests by type, see TypeGroupNumber

/// FF02::116 for kLink and kAgentsGroup.
asio::ip::address_v6 Ipv6Group(GroupReach reach, std::uint32_t group);

/// What an agent at an address of this family listens to, whatever services it has: the group of IPv4, or the
/// fixed ones of IPv6.
std::vector<asio::ip::address> GroupsFor(const asio::ip::address& address);

/// Four decimal numbers with dots between, and nothing of the short forms that some systems read ("1.2.3").
std::optional<asio::ip::address_v4> ParseAddress(const std::string& text);

/// An address as ParseAddress takes it, or one of IPv6 without brackets, with a zone where it is of a link
/// ("fe80::1%eth0"). An IPv4 address that IPv6 carries is the IPv4 address.
std::optional<asio::ip::address> ParseAnyAddress(const std::string& text);

/// The same where IPv6 is in use, else as ParseAddress.
std::optional<asio::ip::address> ParseUsableAddress(const std::string& text, bool with_ipv6);

/// An address of IPv4 or IPv6 as the operating system gives it.
asio::ip::address FromSystem(const asio::ip::udp::endpoint::data_type* address);

/// The same address in the one form in which addresses are compared: no IPv4 address as one of IPv6, and a
/// zone only where an address is of a link.
asio::ip::address Plain(const asio::ip::address& address);

/// As other hosts write it: without the zone, which means something on this host alone.
std::string WithoutZone(const asio::ip::address& address);

}  // namespace slp
