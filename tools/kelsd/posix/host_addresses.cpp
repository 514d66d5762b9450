#include "host_addresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <array>
#include <cstring>

namespace kelsd_tool {
namespace {

// The address as text; empty for one that is no IP address.
std::string ToText(const sockaddr& address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (address.sa_family == AF_INET) {
    sockaddr_in ipv4{};
    std::memcpy(&ipv4, &address, sizeof ipv4);
    inet_ntop(AF_INET, &ipv4.sin_addr, text.data(), text.size());
  } else if (address.sa_family == AF_INET6) {
    sockaddr_in6 ipv6{};
    std::memcpy(&ipv6, &address, sizeof ipv6);
    inet_ntop(AF_INET6, &ipv6.sin6_addr, text.data(), text.size());
  }
  return text.data();
}

}  // namespace

std::vector<std::string> HostAddresses() {
  std::vector<std::string> addresses;
  ifaddrs* interfaces = nullptr;
  if (getifaddrs(&interfaces) != 0) {
    return addresses;
  }
  for (const ifaddrs* entry = interfaces; entry != nullptr; entry = entry->ifa_next) {
    std::string address = entry->ifa_addr == nullptr ? std::string() : ToText(*entry->ifa_addr);
    if (!address.empty()) {
      addresses.push_back(std::move(address));
    }
  }
  freeifaddrs(interfaces);
  return addresses;
}

}  // namespace kelsd_tool
