// Service URLs (RFC 2609 section 2.1) split into their parts. Values; any thread.
#pragma once

#include <string>
#include <string_view>

#include "base/error.h"

namespace slp {

/// The parts as SLPParseSrvURL hands them out.
struct ServiceUrl {
  std::string type;  ///< "service:zdrest.tamro:http", "http"; for "service:servicehost.tamro:://h:1" with the
                     ///< last colon, "service:servicehost.tamro:"
  std::string host;  ///< without a user before it and without the brackets of an IPv6 address; may be empty
  int port = 0;      ///< 0: none given
  std::string family;  ///< "" for IPv4 and names, "v6" for a bracketed IPv6 address, "at", "ipx"
  std::string part;    ///< what follows host and port, from its '/' or ';' on

  bool operator==(const ServiceUrl&) const = default;
};

/// kParseError for "", "not a url", "service:x", a port beyond 65535, a blank or control character and the
/// like. Only a service: URL may do without "//", with an AppleTalk or IPX address or with a path alone.
Result<ServiceUrl> ParseServiceUrl(std::string_view text);

}  // namespace slp
