#include "text/service_url.h"

#include <algorithm>
#include <optional>

#include "text/scanner.h"
#include "text/service_type.h"

namespace slp {
namespace {

constexpr int kLargestPort = 65535;

/// Where the service part begins: its path, or its attributes (RFC 2609 section 2.1).
bool EndsAuthority(char c) {
  return IsOneOf(c, "/?#");
}
bool EndsSite(char c) {
  return EndsAuthority(c) || c == ';';
}

/// Names and IPv4 addresses. More than a hostname of RFC 2609 section 2.1: underscores and international
/// names are in use.
bool IsHostCharacter(char c) {
  return !EndsSite(c) && !IsOneOf(c, ":@[]<>\"\\^`{|}");
}

bool IsIpv6Character(char c) {
  return HexDigitValue(c) >= 0 || c == ':' || c == '.';
}
bool IsZoneCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || IsOneOf(c, "%-._~");
}

/// ":" and 1*DIGIT; 0 when there is none.
std::optional<int> TakePort(Scanner& scanner) {
  if (!scanner.TakeIf(':')) {
    return 0;
  }
  const std::string_view digits = scanner.TakeWhile(IsDigit);
  if (digits.empty()) {
    return std::nullopt;
  }
  int port = 0;
  for (const char digit : digits) {
    port = port * 10 + (digit - '0');
    if (port > kLargestPort) {
      return std::nullopt;
    }
  }
  return port;
}

/// What stands between the brackets of an IPv6 address, with its zone.
std::optional<std::string_view> TakeBracketed(Scanner& scanner) {
  const std::string_view whole = scanner.TakeUntil([](char c) { return c == ']'; });
  Scanner inside(whole);
  const std::string_view address = inside.TakeWhile(IsIpv6Character);
  if (inside.TakeIf('%') && inside.TakeWhile(IsZoneCharacter).empty()) {
    return std::nullopt;
  }
  const bool has_colons = std::count(address.begin(), address.end(), ':') >= 2;
  return has_colons && inside.AtEnd() && scanner.TakeIf(']') ? std::optional(whole) : std::nullopt;
}

/// ipsite behind its "//": [ [ user "@" ] hostport ]. The user is not part of where the service is.
bool TakeIpSite(Scanner& scanner, ServiceUrl& url) {
  Scanner ahead(scanner);
  ahead.TakeUntil([](char c) { return EndsAuthority(c) || c == '@'; });
  if (ahead.TakeIf('@')) {
    scanner = ahead;
  }
  if (scanner.TakeIf('[')) {
    const auto address = TakeBracketed(scanner);
    if (!address) {
      return false;
    }
    url.host = *address;
    url.family = "v6";
  } else {
    url.host = scanner.TakeWhile(IsHostCharacter);
  }
  const auto port = TakePort(scanner);
  url.port = port.value_or(0);
  return port && (scanner.AtEnd() || EndsSite(*scanner.Peek()));
}

/// ipx-net ":" ipx-node ":" ipx-socket
bool IsIpxAddress(std::string_view address) {
  Scanner scanner(address);
  const auto take_digits = [&scanner](std::size_t count) {
    return scanner.TakeWhile([](char c) { return HexDigitValue(c) >= 0; }).size() == count;
  };
  return take_digits(8) && scanner.TakeIf(':') && take_digits(12) && scanner.TakeIf(':') && take_digits(4) &&
         scanner.AtEnd();
}

/// at-object ":" at-type and a zone, whose delimiter RFC 2609 lost in print; "=" and "*" are reserved.
bool IsAppleTalkAddress(std::string_view address) {
  Scanner scanner(address);
  const bool has_object = !scanner.TakeWhile([](char c) { return !IsOneOf(c, ":=*"); }).empty();
  return has_object && scanner.TakeIf(':') &&
         !scanner.TakeWhile([](char c) { return !IsOneOf(c, "=*"); }).empty() && scanner.AtEnd();
}

/// The site of a family other than IP, or none at all: "The <site> field can be null" (RFC 2609 section 2.2).
bool TakeOtherSite(Scanner& scanner, ServiceUrl& url) {
  if (scanner.TakePrefix("/ipx/")) {
    url.family = "ipx";
    url.host = scanner.TakeUntil(EndsSite);
    return IsIpxAddress(url.host);
  }
  if (scanner.TakePrefix("/at/")) {
    url.family = "at";
    url.host = scanner.TakeUntil(EndsSite);
    return IsAppleTalkAddress(url.host);
  }
  return true;
}

}  // namespace

// 1. No control character or blank anywhere (RFC 2396 section 2.4.3).
// 2. The type reaches up to the last colon before the address, which begins with the first "/".
// 3. The address: "//" and an IP site for any URL; another family, or none, only for service: URLs.
// 4. What follows is the service part.
Result<ServiceUrl> ParseServiceUrl(std::string_view text) {
  if (std::any_of(text.begin(), text.end(), [](char c) { return IsControl(c) || c == ' '; })) {
    return Error::kParseError;
  }

  ServiceUrl url;
  const std::size_t separator = text.find(":/");
  if (separator == std::string_view::npos) {
    return Error::kParseError;
  }
  url.type = text.substr(0, separator);
  const auto type = ParseServiceType(url.type);
  if (!type) {
    return Error::kParseError;
  }

  Scanner scanner(text.substr(separator + 1));
  const bool is_ip = scanner.TakePrefix("//");
  if (is_ip ? !TakeIpSite(scanner, url) : !(type->service && TakeOtherSite(scanner, url))) {
    return Error::kParseError;
  }

  url.part = scanner.Rest();
  return url;
}

}  // namespace slp
