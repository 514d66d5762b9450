// This process as the daemon of the same host knows it. Any thread.
#pragma once

#include <cstdint>

namespace slp {

std::uint32_t CurrentProcessId();

}  // namespace slp
