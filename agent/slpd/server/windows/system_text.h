// What the system says about its error codes. Any thread may call it.
#pragma once

#include <cstdint>
#include <string>

namespace slp {

/// The system's sentence with the code behind it: "Access is denied. (5)".
std::string SystemText(std::uint32_t code);

}  // namespace slp
