#include "support/scripted_slp/own_behaviour.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>

namespace scripted_slp {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kReserved = "(),\\!<=>~";

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
    return std::tolower(static_cast<unsigned char>(left)) == std::tolower(static_cast<unsigned char>(right));
  });
}

bool IsControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

}  // namespace

std::optional<ParsedURL> ParseURL(const std::string& url) {
  const std::size_t mark = url.find("://");
  if (mark == std::string::npos || mark == 0) {
    return std::nullopt;
  }
  ParsedURL parsed;
  parsed.type = url.substr(0, mark);
  std::string_view rest = std::string_view(url).substr(mark + 3);
  if (rest.starts_with('[')) {
    const std::size_t end = rest.find(']');
    if (end == std::string_view::npos) {
      return std::nullopt;
    }
    parsed.host = rest.substr(1, end - 1);
    parsed.family = "v6";
    rest.remove_prefix(end + 1);
  } else {
    const std::size_t end = std::min(rest.find_first_of(":/;"), rest.size());
    parsed.host = rest.substr(0, end);
    rest.remove_prefix(end);
  }
  if (rest.starts_with(':')) {
    rest.remove_prefix(1);
    const char* const end = rest.data() + rest.size();
    const std::from_chars_result number = std::from_chars(rest.data(), end, parsed.port);
    if (number.ec != std::errc()) {
      return std::nullopt;
    }
    rest.remove_prefix(static_cast<std::size_t>(number.ptr - rest.data()));
  }
  parsed.part = rest;
  return parsed;
}

std::optional<std::string> AttributeValue(const std::string& list, const std::string& tag) {
  for (std::size_t begin = list.find('('); begin != std::string::npos; begin = list.find('(', begin + 1)) {
    const std::size_t end = list.find(')', begin);
    if (end == std::string::npos) {
      return std::nullopt;
    }
    const std::string attribute = list.substr(begin + 1, end - begin - 1);
    const std::size_t equals = attribute.find('=');
    if (EqualsNoCase(attribute.substr(0, equals), tag)) {
      return equals == std::string::npos ? std::string() : attribute.substr(equals + 1);
    }
  }
  return std::nullopt;
}

std::optional<std::string> Escape(const std::string& text, bool is_tag) {
  std::string escaped;
  for (const char character : text) {
    if (is_tag && (character == '*' || character == '_')) {
      return std::nullopt;
    }
    if (IsControl(character) || kReserved.find(character) != std::string_view::npos) {
      const auto byte = static_cast<unsigned char>(character);
      escaped += '\\';
      escaped += kHexDigits[byte / 16];
      escaped += kHexDigits[byte % 16];
    } else {
      escaped += character;
    }
  }
  return escaped;
}

std::optional<std::string> Unescape(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      plain += text[i];
      continue;
    }
    unsigned int value = 0;
    for (std::size_t digit = 1; digit <= 2; ++digit) {
      const char character = i + digit < text.size() ? text[i + digit] : ' ';
      const std::size_t place =
          kHexDigits.find(static_cast<char>(std::toupper(static_cast<unsigned char>(character))));
      if (place == std::string_view::npos) {
        return std::nullopt;
      }
      value = value * 16 + static_cast<unsigned int>(place);
    }
    plain += static_cast<char>(value);
    i += 2;
  }
  return plain;
}

const std::map<std::string, std::string>& BuiltInProperties() {
  static const std::map<std::string, std::string>& properties = *new std::map<std::string, std::string>{
      {"net.slp.isDA", "false"},
      {"net.slp.isBroadcastOnly", "false"},
      {"net.slp.traceDATraffic", "false"},
      {"net.slp.traceMsg", "false"},
      {"net.slp.traceDrop", "false"},
      {"net.slp.traceReg", "false"},
      {"net.slp.preferSLPv1", "false"},
      {"net.slp.securityEnabled", "false"},
      {"net.slp.useIPv6", "false"},
      {"net.slp.indexSrvtype", "false"},
      {"net.slp.appendLog", "true"},
      {"net.slp.passiveDADetection", "true"},
      {"net.slp.activeDADetection", "true"},
      {"net.slp.watchRegistrationPID", "true"},
      {"net.slp.checkSourceAddr", "true"},
      {"net.slp.useDHCP", "true"},
      {"net.slp.useIPv4", "true"},
      {"net.slp.DAHeartBeat", "10800"},
      {"net.slp.DAActiveDiscoveryInterval", "900"},
      {"net.slp.staleDACheckPeriod", "0"},
      {"net.slp.multicastTTL", "255"},
      {"net.slp.MTU", "1400"},
      {"net.slp.port", "427"},
      {"net.slp.maxResults", "-1"},
      {"net.slp.randomWaitBound", "1000"},
      {"net.slp.multicastMaximumWait", "15000"},
      {"net.slp.unicastMaximumWait", "5000"},
      {"net.slp.DADiscoveryMaximumWait", "5000"},
      {"net.slp.multicastTimeouts", "500,750,1000,1500,2000,3000"},
      {"net.slp.unicastTimeouts", "500,750,1000,1500,2000,3000"},
      {"net.slp.DADiscoveryTimeouts", "500,750,1000,1500,2000,3000"},
      {"net.slp.datagramTimeouts", "500,750,1000,1500,2000,3000"},
      {"net.slp.useScopes", "DEFAULT"},
      {"net.slp.locale", "en"},
      {"net.slp.broadcastAddr", "255.255.255.255"},
      {"net.slp.OpenSLPVersion", "2.0.0"},
      {"net.slp.DAAttributes", ""},
      {"net.slp.DAAddresses", ""},
      {"net.slp.serializedRegURL", ""},
      {"net.slp.interfaces", ""},
      {"net.slp.SAAttributes", ""},
      {"net.slp.typeHint", ""},
      {"net.slp.indexedAttributes", ""},
  };
  return properties;
}

}  // namespace scripted_slp
