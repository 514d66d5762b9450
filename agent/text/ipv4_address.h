// IPv4 addresses as texts (RFC 2608 section 8.1: dotted decimal). Pure functions; any thread.
#pragma once

#include <string_view>

namespace slp {

/// Four decimal numbers from 0 to 255 with dots between them, and nothing else. Not with leading zeros, which
/// some read as octal, and which neither Asio nor the system's inet_pton takes.
bool IsIpv4Address(std::string_view text);

}  // namespace slp
