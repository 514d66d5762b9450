// What a directory agent's attributes say of how often it lets services be registered anew (RFC 2608 section
// 8.5). Pure functions; any thread.
#pragma once

#include <chrono>
#include <string_view>

namespace slp {

/// The attribute "min-refresh-interval" of an attribute list; 0 when it has none that is a single positive
/// number.
std::chrono::seconds AdvertisedRefreshInterval(std::string_view attributes);

}  // namespace slp
