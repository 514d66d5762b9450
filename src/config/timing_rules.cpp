#include "config/timing_rules.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "foundation/conversions.h"
#include "kelsd/CKelSLPConfig.h"

namespace kelsd {
namespace {

std::size_t KeptCount(const std::vector<int>& timeouts) {
  return std::min<std::size_t>(timeouts.size(), CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES);
}

}  // namespace

SResult ValidateMaximumWait(const int& wait, const std::vector<int>& timeouts, const int& minimum,
                            const std::string& kind) {
  const auto refuse = [](const std::string& message) {
    return SResult(SResult::ERR_INVALID_PARAMETER, message, "kelsd::CKelSLPConfig::ValidateMaximumWait");
  };
  if (wait < minimum) {
    return refuse("The " + kind + " maximum wait is too small (must be at least " + Stringify(minimum) +
                  "): " + Stringify(wait) + ".");
  }
  if (timeouts.empty()) {
    return refuse("The " + kind + " maximum wait cannot be validated because no " + kind +
                  " timeouts were provided (must be greater than first " + kind + " timeout).");
  }
  if (wait <= timeouts.front()) {
    return refuse("The " + kind + " maximum wait is too small (must be greater than first " + kind +
                  " timeout " + Stringify(timeouts.front()) + "):" + Stringify(wait) + ".");
  }
  return SResult(SResult::ERR_SUCCESS);
}

SResult ValidateTimeouts(const std::vector<int>& timeouts, const int& wait, const int& minimum,
                         const std::string& kind) {
  const auto refuse = [](const std::string& message) {
    return SResult(SResult::ERR_INVALID_PARAMETER, message, "kelsd::CKelSLPConfig::ValidateTimeouts");
  };
  if (timeouts.empty()) {
    return refuse("No " + kind + " timeout provided (provide at least one value).");
  }
  for (std::size_t i = 0; i < KeptCount(timeouts); ++i) {
    if (timeouts[i] < minimum) {
      return refuse("The " + kind + " timeout value is too small (must be at least " + Stringify(minimum) +
                    "):" + Stringify(timeouts[i]) + " at position " + std::to_string(i + 1) + ".");
    }
  }
  if (wait <= timeouts.front()) {
    return refuse("First " + kind + " timeout is too big (must be smaller than first " + kind +
                  " maximum wait " + Stringify(wait) + "):" + Stringify(timeouts.front()) + ".");
  }
  return SResult(SResult::ERR_SUCCESS);
}

int SumOfWaits(int first, int second) {
  const auto sum = static_cast<std::int64_t>(first) + second;
  return static_cast<int>(std::min<std::int64_t>(sum, std::numeric_limits<int>::max()));
}

std::vector<int> FirstTimeouts(const std::vector<int>& timeouts) {
  return {timeouts.begin(), timeouts.begin() + static_cast<std::ptrdiff_t>(KeptCount(timeouts))};
}

}  // namespace kelsd
