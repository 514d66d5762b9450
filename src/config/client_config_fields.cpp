// Reading, checking and changing the settings of a searching application one by one.
#include <vector>

#include "config/outcomes.h"
#include "config/timing_rules.h"
#include "kelsd/CKelSLPClientConfig.h"

namespace kelsd {
namespace {

constexpr const char* kDADiscovery = "directory agent discovery";
constexpr const char* kMulticast = "multicast";

}  // namespace

int CKelSLPClientConfig::GetMaxResults() const {
  return settings_.max_results;
}

int CKelSLPClientConfig::GetDADiscoveryMaximumWait() const {
  return settings_.da_discovery_maximum_wait;
}

std::vector<int> CKelSLPClientConfig::GetDADiscoveryTimeouts() const {
  return settings_.da_discovery_timeouts;
}

int CKelSLPClientConfig::GetMulticastMaximumWait() const {
  return settings_.multicast_maximum_wait;
}

std::vector<int> CKelSLPClientConfig::GetMulticastTimeouts() const {
  return settings_.multicast_timeouts;
}

int CKelSLPClientConfig::GetTimeout() {
  return settings_.timeout;
}

SResult CKelSLPClientConfig::SetMaxResults(const int& max_results) {
  return StoreIfOk(ValidateMaxResults(max_results), "kelsd::CKelSLPClientConfig::SetMaxResults",
                   settings_.max_results, max_results);
}

SResult CKelSLPClientConfig::SetDADiscoveryMaximumWait(const int& maximum_wait) {
  const SResult outcome = ValidateDADiscoveryMaximumWait(maximum_wait, settings_.da_discovery_timeouts);
  if (outcome.IsOk()) {
    settings_.da_discovery_maximum_wait = maximum_wait;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
  return PassOn(outcome, "kelsd::CKelSLPClientConfig::SetDADiscoveryMaximumWait");
}

SResult CKelSLPClientConfig::SetDADiscoveryTimeouts(const std::vector<int>& timeouts) {
  return StoreIfOk(ValidateDADiscoveryTimeouts(timeouts, settings_.da_discovery_maximum_wait),
                   "kelsd::CKelSLPClientConfig::SetDADiscoveryTimeouts", settings_.da_discovery_timeouts,
                   FirstTimeouts(timeouts));
}

SResult CKelSLPClientConfig::SetDADiscoveryMaximumWaitAndTimeouts(const int& maximum_wait,
                                                                  const std::vector<int>& timeouts) {
  const SResult outcome = ValidateDADiscoveryMaximumWait(maximum_wait, timeouts);
  if (outcome.IsOk()) {
    settings_.da_discovery_timeouts = FirstTimeouts(timeouts);
    settings_.da_discovery_maximum_wait = maximum_wait;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
  return PassOn(outcome, "kelsd::CKelSLPClientConfig::SetDADiscoveryMaximumWaitAndTimeouts");
}

SResult CKelSLPClientConfig::SetMulticastMaximumWait(const int& maximum_wait) {
  const SResult outcome = ValidateMulticastMaximumWait(maximum_wait, settings_.multicast_timeouts);
  if (outcome.IsOk()) {
    settings_.multicast_maximum_wait = maximum_wait;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
  return PassOn(outcome, "kelsd::CKelSLPClientConfig::SetMulticastMaximumWait");
}

SResult CKelSLPClientConfig::SetMulticastTimeouts(const std::vector<int>& timeouts) {
  return StoreIfOk(ValidateMulticastTimeouts(timeouts, settings_.multicast_maximum_wait),
                   "kelsd::CKelSLPClientConfig::SetMulticastTimeouts", settings_.multicast_timeouts,
                   FirstTimeouts(timeouts));
}

SResult CKelSLPClientConfig::SetMulticastMaximumWaitAndTimeouts(const int& maximum_wait,
                                                                const std::vector<int>& timeouts) {
  const SResult outcome = ValidateMulticastMaximumWait(maximum_wait, timeouts);
  if (outcome.IsOk()) {
    settings_.multicast_timeouts = FirstTimeouts(timeouts);
    settings_.multicast_maximum_wait = maximum_wait;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
  return PassOn(outcome, "kelsd::CKelSLPClientConfig::SetMulticastMaximumWaitAndTimeouts");
}

SResult CKelSLPClientConfig::ValidateMaxResults(const int& max_results) {
  return AtLeast(max_results, MAXRESULTS_MINIMUM, "Maximum number of results",
                 "kelsd::CKelSLPClientConfig::ValidateMaxResults");
}

SResult CKelSLPClientConfig::ValidateDADiscoveryMaximumWait(const int& maximum_wait,
                                                            const std::vector<int>& timeouts) {
  return PassOn(ValidateMaximumWait(maximum_wait, timeouts, DADISCOVERYMAXIMUMWAIT_MINIMUM, kDADiscovery),
                "kelsd::CKelSLPClientConfig::ValidateDADiscoveryMaximumWait");
}

SResult CKelSLPClientConfig::ValidateDADiscoveryTimeouts(const std::vector<int>& timeouts,
                                                         const int& maximum_wait) {
  return PassOn(ValidateTimeouts(timeouts, maximum_wait, DADISCOVERYTIMEOUT_MINIMUM, kDADiscovery),
                "kelsd::CKelSLPClientConfig::ValidateDADiscoveryTimeouts");
}

SResult CKelSLPClientConfig::ValidateMulticastMaximumWait(const int& maximum_wait,
                                                          const std::vector<int>& timeouts) {
  return PassOn(ValidateMaximumWait(maximum_wait, timeouts, MULTICASTMAXIMUMWAIT_MINIMUM, kMulticast),
                "kelsd::CKelSLPClientConfig::ValidateMulticastMaximumWait");
}

SResult CKelSLPClientConfig::ValidateMulticastTimeouts(const std::vector<int>& timeouts,
                                                       const int& maximum_wait) {
  return PassOn(ValidateTimeouts(timeouts, maximum_wait, MULTICASTTIMEOUT_MINIMUM, kMulticast),
                "kelsd::CKelSLPClientConfig::ValidateMulticastTimeouts");
}

}  // namespace kelsd
