// What holds between a longest wait and the retransmission timeouts within it, for every kind of request.
// Stateless: any thread may call.
#pragma once

#include <string>
#include <vector>

#include "kelsd/SResult.h"

namespace kelsd {

/// Refuses, in this order, a `wait` below `minimum`, an empty list of timeouts, and a `wait` that isn't
/// greater than the first timeout. `kind` is the request's name in the message ("unicast"). Milliseconds.
[[nodiscard]] SResult ValidateMaximumWait(const int& wait, const std::vector<int>& timeouts,
                                          const int& minimum, const std::string& kind);

/// Refuses, in this order, an empty list, a timeout below `minimum` among the first that are kept, and a
/// first timeout that isn't smaller than `wait`. Milliseconds.
[[nodiscard]] SResult ValidateTimeouts(const std::vector<int>& timeouts, const int& wait, const int& minimum,
                                       const std::string& kind);

/// Both waits together, the largest integer at most.
int SumOfWaits(int first, int second);

/// The timeouts that a record keeps of a longer list.
std::vector<int> FirstTimeouts(const std::vector<int>& timeouts);

}  // namespace kelsd
