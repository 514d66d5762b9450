// Enumeration with getifaddrs.
#include "net/interfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <memory>

#include "net/addresses.h"

namespace slp {
namespace {

asio::ip::address ToAddress(const sockaddr* address) {
  if (address == nullptr) {
    return {};
  }
  if (address->sa_family == AF_INET6) {
    sockaddr_in6 v6;
    std::memcpy(&v6, address, sizeof v6);
    asio::ip::address_v6::bytes_type bytes;
    std::memcpy(bytes.data(), &v6.sin6_addr, bytes.size());
    return Plain(asio::ip::address_v6(bytes, v6.sin6_scope_id));
  }
  sockaddr_in v4;
  std::memcpy(&v4, address, sizeof v4);
  return asio::ip::address_v4(ntohl(v4.sin_addr.s_addr));
}

}  // namespace

std::vector<Interface> EnumerateInterfaces(bool with_ipv6) {
  ifaddrs* head = nullptr;
  if (getifaddrs(&head) != 0) {
    return {};
  }
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(head, &freeifaddrs);
  std::vector<Interface> found;
  for (const ifaddrs* entry = head; entry != nullptr; entry = entry->ifa_next) {
    const int family = entry->ifa_addr == nullptr ? AF_UNSPEC : entry->ifa_addr->sa_family;
    if (family != AF_INET && !(with_ipv6 && family == AF_INET6)) {
      continue;
    }
    found.push_back({.name = entry->ifa_name,
                     .address = ToAddress(entry->ifa_addr),
                     .netmask = ToAddress(entry->ifa_netmask),
                     .up = (entry->ifa_flags & IFF_UP) != 0,
                     .multicast = (entry->ifa_flags & IFF_MULTICAST) != 0,
                     .loopback = (entry->ifa_flags & IFF_LOOPBACK) != 0,
                     .index = family == AF_INET6 ? ::if_nametoindex(entry->ifa_name) : 0});
  }
  return found;
}

}  // namespace slp
