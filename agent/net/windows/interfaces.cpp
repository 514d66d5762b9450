// Enumeration with GetAdaptersAddresses.
#include "net/interfaces.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <cstddef>

#include "net/addresses.h"

namespace slp {
namespace {

std::string ToUtf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) {
    return {};
  }
  std::string result(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
  result.pop_back();
  return result;
}

asio::ip::address ToNetmask(int family, unsigned prefix_length) {
  if (family == AF_INET6) {
    asio::ip::address_v6::bytes_type bytes{};
    for (unsigned bit = 0; bit < prefix_length && bit < 8 * bytes.size(); ++bit) {
      bytes[bit / 8] |= static_cast<unsigned char>(0x80U >> (bit % 8));
    }
    return asio::ip::address_v6(bytes);
  }
  const unsigned bits = prefix_length > 32 ? 0 : prefix_length;
  return asio::ip::address_v4(bits == 0 ? 0U : 0xFFFFFFFFU << (32 - bits));
}

/// The adapters' records lie one after another in `buffer`, null stands for no adapter; none when the system
/// does not tell.
std::optional<const IP_ADAPTER_ADDRESSES*> QueryAdapters(ULONG family, std::vector<std::byte>& buffer) {
  constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
  // The needed size may grow between two calls when an adapter comes; a few tries are enough.
  ULONG size = 16384;
  for (int attempt = 0; attempt < 4; ++attempt) {
    buffer.resize(size);
    void* const start = buffer.data();
    auto* const first = static_cast<IP_ADAPTER_ADDRESSES*>(start);
    const ULONG status = GetAdaptersAddresses(family, kFlags, nullptr, first, &size);
    if (status == NO_ERROR) {
      return first;
    }
    if (status == ERROR_NO_DATA) {
      return nullptr;
    }
    if (status != ERROR_BUFFER_OVERFLOW) {
      break;
    }
  }
  return std::nullopt;
}

// The same number, which Wine tells in one place only.
std::uint32_t Ipv6Index(const IP_ADAPTER_ADDRESSES& adapter) {
  return adapter.Ipv6IfIndex != 0 ? adapter.Ipv6IfIndex : adapter.IfIndex;
}

}  // namespace

std::optional<std::vector<Interface>> EnumerateInterfaces(bool with_ipv6) {
  std::vector<std::byte> buffer;
  const std::optional<const IP_ADAPTER_ADDRESSES*> adapters =
      QueryAdapters(with_ipv6 ? AF_UNSPEC : AF_INET, buffer);
  if (!adapters) {
    return std::nullopt;
  }
  std::vector<Interface> found;
  for (const auto* adapter = *adapters; adapter != nullptr; adapter = adapter->Next) {
    for (const auto* entry = adapter->FirstUnicastAddress; entry != nullptr; entry = entry->Next) {
      const int family = entry->Address.lpSockaddr->sa_family;
      if (family != AF_INET && !(with_ipv6 && family == AF_INET6)) {
        continue;
      }
      found.push_back({.name = ToUtf8(adapter->FriendlyName),
                       .address = FromSystem(entry->Address.lpSockaddr),
                       .netmask = ToNetmask(family, entry->OnLinkPrefixLength),
                       .up = adapter->OperStatus == IfOperStatusUp,
                       .multicast = adapter->NoMulticast == 0,
                       .loopback = adapter->IfType == IF_TYPE_SOFTWARE_LOOPBACK,
                       .index = family == AF_INET6 ? Ipv6Index(*adapter) : adapter->IfIndex});
    }
  }
  return found;
}

}  // namespace slp
