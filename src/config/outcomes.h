// How the configuration records pass outcomes on. Stateless: any thread may call.
#pragma once

#include <string>
#include <vector>

#include "foundation/conversions.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Refuses a `value` below `minimum`, with `name` and both numbers in the message.
[[nodiscard]] inline SResult AtLeast(const int& value, const int& minimum, const std::string& name,
                                     const std::string& function) {
  if (value < minimum) {
    return SResult(
        SResult::ERR_INVALID_PARAMETER,
        name + " is too small (must be at least " + Stringify(minimum) + "): " + Stringify(value) + ".",
        function);
  }
  return SResult(SResult::ERR_SUCCESS);
}

/// A failure with `function` in front of its debug trail; a fresh success otherwise.
[[nodiscard]] inline SResult PassOn(const SResult& outcome, const std::string& function) {
  return outcome.IsOk() ? SResult(SResult::ERR_SUCCESS) : outcome.PrependErrorDebug(function, " ");
}

/// Stores `value` in `field` unless `outcome`, its check, is a failure; passes the outcome on.
template <typename T>
[[nodiscard]] SResult StoreIfOk(const SResult& outcome, const std::string& function, T& field,
                                const T& value) {
  if (outcome.IsOk()) {
    field = value;
  }
  return PassOn(outcome, function);
}

/// Appends `outcome` to `problems` if it is a failure.
inline void CollectFailure(const SResult& outcome, std::vector<SResult>& problems) {
  if (outcome.IsNotOk()) {
    problems.push_back(outcome);
  }
}

/// Whether both checks of a maximum wait and its timeouts passed; appends those that failed to `problems`.
[[nodiscard]] inline bool BothPassed(const SResult& wait_outcome, const SResult& timeouts_outcome,
                                     std::vector<SResult>& problems) {
  CollectFailure(wait_outcome, problems);
  CollectFailure(timeouts_outcome, problems);
  return wait_outcome.IsOk() && timeouts_outcome.IsOk();
}

}  // namespace kelsd
