// The system's own words for one of its error numbers. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace kelsd::platform {

/// "Unknown error." for a number that the system has no words for.
std::string SystemErrorText(std::uint32_t code);

}  // namespace kelsd::platform
