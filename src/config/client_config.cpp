// Making, clearing, comparing and checking the settings of a searching application as a whole.
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "config/outcomes.h"
#include "config/timing_rules.h"
#include "kelsd/CKelSLPClientConfig.h"

namespace kelsd {

CKelSLPClientConfig::CKelSLPClientConfig() = default;

CKelSLPClientConfig::CKelSLPClientConfig(
    const int& multicast_ttl, const int& unicast_maximum_wait, const std::vector<int>& unicast_timeouts,
    const int& mtu, const std::string& broadcast_addr, const bool& use_dhcp,
    const std::vector<std::string>& interfaces, const bool& active_da_detection, const int& port,
    const bool& security_enabled, const bool& use_ipv4, const bool& use_ipv6,
    const std::string& open_slp_version, const int& max_results, const int& da_discovery_maximum_wait,
    const std::vector<int>& da_discovery_timeouts, const int& multicast_maximum_wait,
    const std::vector<int>& multicast_timeouts, std::vector<SResult>& problems)
    : CKelSLPConfig(multicast_ttl, unicast_maximum_wait, unicast_timeouts, mtu, broadcast_addr, use_dhcp,
                    interfaces, active_da_detection, port, security_enabled, use_ipv4, use_ipv6,
                    open_slp_version, problems) {
  CollectFailure(SetMaxResults(max_results), problems);
  if (BothPassed(ValidateDADiscoveryMaximumWait(da_discovery_maximum_wait, da_discovery_timeouts),
                 ValidateDADiscoveryTimeouts(da_discovery_timeouts, da_discovery_maximum_wait), problems)) {
    settings_.da_discovery_maximum_wait = da_discovery_maximum_wait;
    settings_.da_discovery_timeouts = da_discovery_timeouts;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
  if (BothPassed(ValidateMulticastMaximumWait(multicast_maximum_wait, multicast_timeouts),
                 ValidateMulticastTimeouts(multicast_timeouts, multicast_maximum_wait), problems)) {
    settings_.multicast_maximum_wait = multicast_maximum_wait;
    settings_.multicast_timeouts = multicast_timeouts;
    settings_.timeout = SumOfWaits(settings_.da_discovery_maximum_wait, settings_.multicast_maximum_wait);
  }
}

CKelSLPClientConfig::~CKelSLPClientConfig() = default;

void CKelSLPClientConfig::Clear() {
  CKelSLPConfig::Clear();
  settings_ = Settings();
}

std::map<CKelSLPConfig::EProperty, std::string> CKelSLPClientConfig::Validate() const {
  return CKelSLPConfig::Validate();
}

bool CKelSLPClientConfig::EditableEqualTo(const CKelSLPClientConfig& other) const {
  const auto editable = [](const Settings& s) {
    return std::tie(s.max_results, s.da_discovery_maximum_wait, s.da_discovery_timeouts,
                    s.multicast_maximum_wait, s.multicast_timeouts);
  };
  return CKelSLPConfig::EditableEqualTo(other) && editable(settings_) == editable(other.settings_);
}

bool CKelSLPClientConfig::EqualTo(const CKelSLPClientConfig& other) const {
  return CKelSLPConfig::EqualTo(other) && EditableEqualTo(other);
}

}  // namespace kelsd
