#include "address_option.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace kelsd_tool {
namespace {

bool AllDigits(const std::string& text) {
  return std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

// Not with leading zeros, which some read as octal, and which SLP does not take.
bool IsIpv4Address(const std::string& text) {
  std::istringstream parts(text + ".");
  std::size_t count = 0;
  for (std::string part; std::getline(parts, part, '.'); ++count) {
    const bool leading_zero = part.size() > 1 && part.front() == '0';
    if (part.empty() || part.size() > 3 || leading_zero || !AllDigits(part) || std::stoi(part) > 255) {
      return false;
    }
  }
  return count == 4;
}

// Digits and colons; how many of them, the agent knows best.
bool IsIpv6Address(const std::string& text) {
  const std::string address = text.substr(0, text.find('%'));
  return std::count(address.begin(), address.end(), ':') >= 2 &&
         std::all_of(address.begin(), address.end(),
                     [](unsigned char c) { return std::isxdigit(c) != 0 || c == ':' || c == '.'; });
}

}  // namespace

bool IsIpAddress(const std::string& text) {
  return IsIpv4Address(text) || IsIpv6Address(text);
}

CLI::Validator IpAddressOnly() {
  return {[](const std::string& text) {
            return IsIpAddress(text)
                       ? std::string()
                       : "'" + text + "' is no IP address, and SLP looks up no names; e.g. 10.0.0.5";
          },
          "", "IP address"};
}

}  // namespace kelsd_tool
