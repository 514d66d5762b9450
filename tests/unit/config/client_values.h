// The values of a client's record as one comparable and printable whole.
#pragma once

#include <tuple>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "unit/config/base_values.h"

namespace kelsd {

/// Accepted values of which none is a default and no two of a kind are equal.
struct ClientValues : BaseValues {
  int max_results = 12;
  int da_discovery_maximum_wait = 2500;
  std::vector<int> da_discovery_timeouts = {110, 210};
  int multicast_maximum_wait = 3500;
  std::vector<int> multicast_timeouts = {120, 220};

  /// What `Clear` gives, with the version that the library requires.
  static ClientValues Cleared() {
    ClientValues values;
    static_cast<BaseValues&>(values) = BaseValues::Cleared();
    values.max_results = -1;
    values.da_discovery_maximum_wait = 4000;
    values.da_discovery_timeouts = {500, 750, 1100, 1600};
    values.multicast_maximum_wait = 6000;
    values.multicast_timeouts = {500, 750, 1100, 1600, 2000};
    return values;
  }

  auto Arguments() const {
    return std::tuple_cat(BaseValues::Arguments(),
                          std::make_tuple(max_results, da_discovery_maximum_wait, da_discovery_timeouts,
                                          multicast_maximum_wait, multicast_timeouts));
  }
};

/// What the getters of the client's settings but the timeout tell, in the order of `ClientValues::Arguments`.
inline auto Read(const CKelSLPClientConfig& config) {
  return std::tuple_cat(Read(static_cast<const CKelSLPConfig&>(config)),
                        std::make_tuple(config.GetMaxResults(), config.GetDADiscoveryMaximumWait(),
                                        config.GetDADiscoveryTimeouts(), config.GetMulticastMaximumWait(),
                                        config.GetMulticastTimeouts()));
}

/// All three pairs of maximum wait and timeouts, and the timeout.
inline auto ReadTiming(CKelSLPClientConfig& config) {
  return std::make_tuple(config.GetDADiscoveryMaximumWait(), config.GetDADiscoveryTimeouts(),
                         config.GetMulticastMaximumWait(), config.GetMulticastTimeouts(),
                         config.GetUnicastMaximumWait(), config.GetUnicastTimeouts(), config.GetTimeout());
}

}  // namespace kelsd
