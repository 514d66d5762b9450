// The part of a limit that is not kept free for the programs of the own host. A pure function; any thread.
#pragma once

#include <cstddef>

namespace slp {

/// What other hosts may fill of a limit all together: the own host's programs always find room.
constexpr std::size_t OthersPart(std::size_t limit) {
  return limit - limit / 8;
}

}  // namespace slp
