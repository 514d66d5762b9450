#include "text/ipv4_address.h"

#include <charconv>

namespace slp {
namespace {

constexpr int kParts = 4;
constexpr int kLargestPart = 255;

}  // namespace

bool IsIpv4Address(std::string_view text) {
  for (int part = 0; part < kParts; ++part) {
    if (part > 0) {
      if (text.empty() || text.front() != '.') {
        return false;
      }
      text.remove_prefix(1);
    }
    if (text.empty() || text.front() < '0' || text.front() > '9') {
      return false;
    }
    int value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    const auto digits = static_cast<std::size_t>(read.ptr - text.data());
    if (read.ec != std::errc() || value > kLargestPart || (text.front() == '0' && digits > 1)) {
      return false;
    }
    text.remove_prefix(digits);
  }
  return text.empty();
}

}  // namespace slp
