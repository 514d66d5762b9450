// For tests that are not about what comparing costs. Any thread, one at a time.
#pragma once

#include <limits>

#include "text/effort.h"

namespace slp {

inline Effort& Unlimited() {
  static Effort effort(std::numeric_limits<std::size_t>::max());
  return effort;
}

}  // namespace slp
