// Checks of what the user gives as the address of a host.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace kelsd_tool {

/// Whether `text` is written like an IPv4 or IPv6 address.
bool IsIpAddress(const std::string& text);

/// Lets an option take IP addresses only: SLP looks up no names.
CLI::Validator IpAddressOnly();

}  // namespace kelsd_tool
