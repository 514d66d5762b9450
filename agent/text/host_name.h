// Names of hosts. Pure functions; any thread.
#pragma once

#include <string_view>

namespace slp {

/// Letters, digits, hyphens and dots, and behind the last dot not digits alone, as a mistaken address has
/// them (RFC 1123 section 2.1).
bool IsHostName(std::string_view text);

}  // namespace slp
