#include "host_addresses.h"

#include <winsock2.h>
#include <ws2tcpip.h>
// After the sockets.
#include <iphlpapi.h>

#include <array>
#include <cstddef>
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
  // Between two calls the host may get interfaces; after so many tries it is left at none.
  constexpr int kTries = 4;
  constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  std::vector<std::string> addresses;
  ULONG size = 16 * 1024;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    // The system writes records into it, which refer to one another.
    std::vector<std::max_align_t> memory(size / sizeof(std::max_align_t) + 1);
    auto* first = static_cast<IP_ADAPTER_ADDRESSES*>(static_cast<void*>(memory.data()));
    const ULONG error = GetAdaptersAddresses(AF_UNSPEC, kFlags, nullptr, first, &size);
    if (error == ERROR_BUFFER_OVERFLOW) {
      continue;
    }
    for (const auto* adapter = error == NO_ERROR ? first : nullptr; adapter != nullptr;
         adapter = adapter->Next) {
      for (const auto* entry = adapter->FirstUnicastAddress; entry != nullptr; entry = entry->Next) {
        std::string address = ToText(*entry->Address.lpSockaddr);
        if (!address.empty()) {
          addresses.push_back(std::move(address));
        }
      }
    }
    break;
  }
  return addresses;
}

}  // namespace kelsd_tool
