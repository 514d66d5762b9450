#include "text/ip_address.h"

#include <algorithm>
#include <charconv>

#include "text/ipv4_address.h"

namespace slp {
namespace {

using Ipv6Bytes = std::array<std::uint8_t, 16>;

constexpr std::size_t kLongestGroup = 4;
constexpr int kHexadecimal = 16;

/// Some of the groups of an address, from left to right.
struct Groups {
  Ipv6Bytes bytes{};
  std::size_t size = 0;

  bool Add(unsigned value) {
    if (size + 2 > bytes.size()) {
      return false;
    }
    bytes[size++] = static_cast<std::uint8_t>(value >> 8U);
    bytes[size++] = static_cast<std::uint8_t>(value & 0xFFU);
    return true;
  }

  bool AddIpv4(std::string_view text) {
    if (!IsIpv4Address(text) || size + 4 > bytes.size()) {
      return false;
    }
    for (int part = 0; part < 4; ++part) {
      const std::from_chars_result read =
          std::from_chars(text.data(), text.data() + text.size(), bytes[size++]);
      text.remove_prefix(
          std::min<std::size_t>(text.size(), static_cast<std::size_t>(read.ptr - text.data()) + 1));
    }
    return true;
  }
};

/// "2001:db8:7", where the last one may be an IPv4 address.
std::optional<Groups> TakeGroups(std::string_view text) {
  Groups groups;
  while (!text.empty()) {
    const std::size_t colon = text.find(':');
    const std::string_view group = text.substr(0, colon);
    if (colon == std::string_view::npos && group.find('.') != std::string_view::npos) {
      return groups.AddIpv4(group) ? std::optional(groups) : std::nullopt;
    }
    unsigned value = 0;
    const auto read = std::from_chars(group.data(), group.data() + group.size(), value, kHexadecimal);
    if (group.empty() || group.size() > kLongestGroup || read.ec != std::errc() ||
        read.ptr != group.data() + group.size() || !groups.Add(value)) {
      return std::nullopt;
    }
    if (colon == std::string_view::npos) {
      break;
    }
    text.remove_prefix(colon + 1);
    if (text.empty()) {
      return std::nullopt;
    }
  }
  return groups;
}

}  // namespace

std::optional<Ipv6Bytes> ParseIpv6Address(std::string_view text) {
  text = WithoutZone(text);
  constexpr std::string_view kGap = "::";
  const std::size_t gap = text.find(kGap);
  const auto front = TakeGroups(text.substr(0, gap));
  if (!front) {
    return std::nullopt;
  }
  if (gap == std::string_view::npos) {
    return front->size == front->bytes.size() ? std::optional(front->bytes) : std::nullopt;
  }
  const std::string_view rest = text.substr(gap + kGap.size());
  const auto back = TakeGroups(rest);
  // An IPv4 address stands at the end, never before the gap.
  if (!back || text.substr(0, gap).find('.') != std::string_view::npos ||
      front->size + back->size >= front->bytes.size()) {
    return std::nullopt;
  }
  Ipv6Bytes bytes = front->bytes;
  std::copy_n(back->bytes.begin(), back->size, bytes.end() - static_cast<std::ptrdiff_t>(back->size));
  return bytes;
}

bool IsIpAddress(std::string_view text) {
  return IsIpv4Address(text) || ParseIpv6Address(text).has_value();
}

bool SameIpAddress(std::string_view one, std::string_view other) {
  const auto one_bytes = ParseIpv6Address(one);
  return one_bytes ? one_bytes == ParseIpv6Address(other) : one == other;
}

bool IsLoopbackAddress(std::string_view address) {
  return address.starts_with("127.") || address == "::1";
}

std::string_view WithoutZone(std::string_view address) {
  return address.substr(0, address.find('%'));
}

std::string UrlHost(std::string_view address) {
  const std::string host(WithoutZone(address));
  return host.find(':') == std::string::npos ? host : '[' + host + ']';
}

}  // namespace slp
