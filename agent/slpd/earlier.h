// The earlier of two moments of which there may be none. Pure; any thread.
#pragma once

#include <algorithm>
#include <optional>

#include "slpd/seconds.h"

namespace slp {

/// None is never, and so later than any.
inline std::optional<Instant> Earlier(const std::optional<Instant>& one,
                                      const std::optional<Instant>& other) {
  return one && other ? std::min(one, other) : (one ? one : other);
}

}  // namespace slp
