// One duration for a whole search, divided among directory agent discovery, multicast and unicast.
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "config/outcomes.h"
#include "foundation/conversions.h"
#include "kelsd/CKelSLPClientConfig.h"

namespace kelsd {
namespace {

struct Timing {
  int wait;
  std::vector<int> timeouts;
};

/// `value` times `numerator` over `denominator`, rounded.
int Scale(int value, int numerator, int denominator) {
  return static_cast<int>(std::floor(value * static_cast<double>(numerator) / denominator + 0.5));
}

/// The whole `seed` list, and behind it those values of the `guide` list at later positions with which the
/// sum of all timeouts stays below `wait`.
std::vector<int> FitTimeouts(const std::vector<int>& seed, const std::vector<int>& guide, int wait) {
  std::vector<int> timeouts;
  int sum = 0;
  for (std::size_t i = 0; i < guide.size(); ++i) {
    const bool seeded = i < seed.size();
    const int timeout = seeded ? seed[i] : guide[i];
    if (seeded || timeout + sum < wait) {
      timeouts.push_back(timeout);
      sum += timeout;
    }
  }
  return timeouts;
}

}  // namespace

// 1. A timeout that the record has already changes nothing.
// 2. The waits stand to the timeout, and the unicast wait to the multicast wait, as in the defaults.
// 3. Each wait gets the default timeouts of its kind and as many further ones as fit.
// 4. All three pairs must pass the check of the unicast timing; otherwise nothing changes, and the failures
//    are told together.
// 5. The pairs are set one after the other up to the first failure.
// 6. The timeout is kept as given: the sum of the rounded waits may differ from it.
SResult CKelSLPClientConfig::SetTimeout(const int& timeout) {
  if (timeout == settings_.timeout) {
    return SResult(SResult::ERR_SUCCESS);
  }

  const int da_discovery_wait = Scale(timeout, DADISCOVERYMAXIMUMWAIT_DEFAULT, TIMEOUT_DEFAULT);
  const int multicast_wait = Scale(timeout, MULTICASTMAXIMUMWAIT_DEFAULT, TIMEOUT_DEFAULT);
  const int unicast_wait = Scale(multicast_wait, UNICASTMAXIMUMWAIT_DEFAULT, MULTICASTMAXIMUMWAIT_DEFAULT);

  const std::vector<int> guide = DADISCOVERYTIMEOUTS_DEFAULT_SLP();
  const Timing da_discovery = {da_discovery_wait,
                               FitTimeouts(DADISCOVERYTIMEOUTS_DEFAULT(), guide, da_discovery_wait)};
  const Timing multicast = {multicast_wait, FitTimeouts(MULTICASTTIMEOUTS_DEFAULT(), guide, multicast_wait)};
  const Timing unicast = {unicast_wait, FitTimeouts(UNICASTTIMEOUTS_DEFAULT(), guide, unicast_wait)};

  std::string failures;
  for (const Timing& timing : {da_discovery, multicast, unicast}) {
    const SResult outcome = ValidateUnicastMaximumWait(timing.wait, timing.timeouts);
    if (outcome.IsNotOk()) {
      failures += outcome.GetErrorDetail() + " ";
    }
  }
  if (!failures.empty()) {
    return SResult(SResult::ERR_INVALID_PARAMETER,
                   "Invalid timeout value of " + Stringify(timeout) + " provided (too small). " + failures,
                   "kelsd::CKelSLPClientConfig::SetTimeout");
  }

  SResult outcome = SetDADiscoveryMaximumWaitAndTimeouts(da_discovery.wait, da_discovery.timeouts);
  if (outcome.IsOk()) {
    outcome = SetMulticastMaximumWaitAndTimeouts(multicast.wait, multicast.timeouts);
  }
  if (outcome.IsOk()) {
    outcome = SetUnicasttMaximumWaitAndTimeouts(unicast.wait, unicast.timeouts);
  }
  return StoreIfOk(outcome, "kelsd::CKelSLPClientConfig::SetTimeout", settings_.timeout, timeout);
}

}  // namespace kelsd
