// Enumeration with getifaddrs.
#include "net/interfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <memory>

namespace slp {
namespace {

asio::ip::address_v4 ToAddress(const sockaddr* address) {
  if (address == nullptr) {
    return {};
  }
  sockaddr_in v4;
  std::memcpy(&v4, address, sizeof v4);
  return asio::ip::address_v4(ntohl(v4.sin_addr.s_addr));
}

}  // namespace

std::vector<Interface> EnumerateInterfaces() {
  ifaddrs* head = nullptr;
  if (getifaddrs(&head) != 0) {
    return {};
  }
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(head, &freeifaddrs);
  std::vector<Interface> found;
  for (const ifaddrs* entry = head; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) {
      continue;
    }
    found.push_back({.name = entry->ifa_name,
                     .address = ToAddress(entry->ifa_addr),
                     .netmask = ToAddress(entry->ifa_netmask),
                     .up = (entry->ifa_flags & IFF_UP) != 0,
                     .multicast = (entry->ifa_flags & IFF_MULTICAST) != 0,
                     .loopback = (entry->ifa_flags & IFF_LOOPBACK) != 0});
  }
  return found;
}

}  // namespace slp
