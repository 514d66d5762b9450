// Enumeration with getifaddrs.
#include "net/interfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

#include <cerrno>
#include <memory>

#include "net/addresses.h"

namespace slp {
namespace {

// The interface has left since it was listed; any other error is of the system.
bool IsGone(int error) {
  return error == ENODEV || error == ENXIO;
}

}  // namespace

std::optional<std::vector<Interface>> EnumerateInterfaces(bool with_ipv6) {
  ifaddrs* head = nullptr;
  if (getifaddrs(&head) != 0) {
    return std::nullopt;
  }
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(head, &freeifaddrs);
  std::vector<Interface> found;
  for (const ifaddrs* entry = head; entry != nullptr; entry = entry->ifa_next) {
    const int family = entry->ifa_addr == nullptr ? AF_UNSPEC : entry->ifa_addr->sa_family;
    if (family != AF_INET && !(with_ipv6 && family == AF_INET6)) {
      continue;
    }
    const std::uint32_t index = ::if_nametoindex(entry->ifa_name);
    if (index == 0 && !IsGone(errno)) {
      return std::nullopt;
    }
    // Addresses of IPv4 may have a label of their own in place of the interface's name.
    if (index == 0 && family == AF_INET6) {
      continue;
    }
    found.push_back(
        {.name = entry->ifa_name,
         .address = FromSystem(entry->ifa_addr),
         .netmask = entry->ifa_netmask == nullptr ? asio::ip::address() : FromSystem(entry->ifa_netmask),
         .up = (entry->ifa_flags & IFF_UP) != 0,
         .multicast = (entry->ifa_flags & IFF_MULTICAST) != 0,
         .loopback = (entry->ifa_flags & IFF_LOOPBACK) != 0,
         .index = index});
  }
  return found;
}

}  // namespace slp
