// The addresses that this host has itself. One implementation a platform. Any thread may call it.
#pragma once

#include <string>
#include <vector>

namespace kelsd_tool {

/// IPv4 and IPv6 addresses of all interfaces, as text; empty when the system tells none.
std::vector<std::string> HostAddresses();

}  // namespace kelsd_tool
