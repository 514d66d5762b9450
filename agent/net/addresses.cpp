#include "net/addresses.h"

#include <cstring>

#include "text/ip_address.h"

namespace slp {

asio::ip::address_v6 Ipv6Group(GroupReach reach, std::uint32_t group) {
  asio::ip::address_v6::bytes_type bytes{0xFF, static_cast<std::uint8_t>(reach)};
  for (std::size_t i = 0; i < sizeof group; ++i) {
    bytes[bytes.size() - 1 - i] = static_cast<std::uint8_t>(group >> (8 * i));
  }
  return asio::ip::address_v6(bytes);
}

std::vector<asio::ip::address> GroupsFor(const asio::ip::address& address) {
  if (address.is_v4()) {
    return {kMulticastGroup};
  }
  return {Ipv6Group(GroupReach::kLink, kAgentsGroup), Ipv6Group(GroupReach::kSite, kAgentsGroup),
          Ipv6Group(GroupReach::kLink, kDirectoryAgentsGroup),
          Ipv6Group(GroupReach::kSite, kDirectoryAgentsGroup)};
}

std::optional<asio::ip::address_v4> ParseAddress(const std::string& text) {
  asio::error_code error;
  const auto address = asio::ip::make_address_v4(text, error);
  return error || address.to_string() != text ? std::nullopt : std::optional(address);
}

std::optional<asio::ip::address> ParseAnyAddress(const std::string& text) {
  if (const auto v4 = ParseAddress(text)) {
    return *v4;
  }
  // Some systems take brackets and ports, too.
  if (!ParseIpv6Address(text)) {
    return std::nullopt;
  }
  asio::error_code error;
  const auto v6 = asio::ip::make_address_v6(text, error);
  const bool has_zone = text.find('%') != std::string::npos;
  if (error || has_zone != (v6.scope_id() != 0)) {
    return std::nullopt;
  }
  return Plain(v6);
}

std::optional<asio::ip::address> ParseUsableAddress(const std::string& text, bool with_ipv6) {
  if (with_ipv6) {
    return ParseAnyAddress(text);
  }
  const auto v4 = ParseAddress(text);
  return v4 ? std::optional<asio::ip::address>(*v4) : std::nullopt;
}

asio::ip::address FromSystem(const asio::ip::udp::endpoint::data_type* address) {
  asio::ip::udp::endpoint endpoint;
  std::memcpy(endpoint.data(), address,
              address->sa_family == AF_INET6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in));
  return Plain(endpoint.address());
}

asio::ip::address Plain(const asio::ip::address& address) {
  if (!address.is_v6()) {
    return address;
  }
  const asio::ip::address_v6 v6 = address.to_v6();
  if (v6.is_v4_mapped()) {
    return asio::ip::make_address_v4(asio::ip::v4_mapped, v6);
  }
  return v6.is_link_local() ? v6 : asio::ip::address_v6(v6.to_bytes());
}

std::string WithoutZone(const asio::ip::address& address) {
  return address.is_v6() ? asio::ip::address_v6(address.to_v6().to_bytes()).to_string() : address.to_string();
}

}  // namespace slp
