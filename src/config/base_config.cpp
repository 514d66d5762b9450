// Making, clearing, comparing and checking the common settings as a whole.
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "config/outcomes.h"
#include "config/requirements.h"
#include "foundation/conversions.h"
#include "kelsd/CKelSLPConfig.h"

namespace kelsd {
namespace {

constexpr const char* kRequiredOpenSLPVersion = "2.0.0";

}  // namespace

CKelSLPConfig::CKelSLPConfig() = default;

CKelSLPConfig::CKelSLPConfig(const int& multicast_ttl, const int& unicast_maximum_wait,
                             const std::vector<int>& unicast_timeouts, const int& mtu,
                             const std::string& broadcast_addr, const bool& use_dhcp,
                             const std::vector<std::string>& interfaces, const bool& active_da_detection,
                             const int& port, const bool& security_enabled, const bool& use_ipv4,
                             const bool& use_ipv6, const std::string& open_slp_version,
                             std::vector<SResult>& problems)
    : open_slp_version_(open_slp_version) {
  CollectFailure(SetMulticastTTL(multicast_ttl), problems);
  if (BothPassed(ValidateUnicastMaximumWait(unicast_maximum_wait, unicast_timeouts),
                 ValidateUnicastTimeouts(unicast_timeouts, unicast_maximum_wait), problems)) {
    settings_.unicast_maximum_wait = unicast_maximum_wait;
    settings_.unicast_timeouts = unicast_timeouts;
  }
  CollectFailure(SetMTU(mtu), problems);
  SetBroadcastAddr(broadcast_addr);
  SetUseDHCP(use_dhcp);
  SetInterfaces(interfaces);
  settings_.active_da_detection = active_da_detection;
  settings_.port = port;
  settings_.security_enabled = security_enabled;
  settings_.use_ipv4 = use_ipv4;
  settings_.use_ipv6 = use_ipv6;
}

CKelSLPConfig::~CKelSLPConfig() = default;

void CKelSLPConfig::Clear() {
  settings_ = Settings();
}

std::map<CKelSLPConfig::EProperty, std::string> CKelSLPConfig::Validate() const {
  std::map<EProperty, std::string> deviations;
  AddUnmet(
      {
          {settings_.active_da_detection, PROP_ACTIVEDADETECTION,
           "Active directory agent detection is disabled (should be enabled)."},
          {settings_.port == PORT_DEFAULT, PROP_PORT,
           "The port should be " + Stringify(PORT_DEFAULT) + ", but is currently set to " +
               Stringify(settings_.port) + "."},
          {!settings_.security_enabled, PROP_SECURITYENABLED,
           "The security feature is enabled (should be disabled)."},
          {settings_.use_ipv4, PROP_USEIPV4, "The IPv4 protocol support is disabled (should be enabled)."},
          {!settings_.use_ipv6, PROP_USEIPV6, "The IPv6 protocol support is enabled (should be disabled)."},
          {open_slp_version_ == kRequiredOpenSLPVersion, PROP_OPENSLPVERSION,
           "Conflicting SLP version of " + open_slp_version_ + " (should be " + kRequiredOpenSLPVersion +
               ")."},
      },
      deviations);
  return deviations;
}

bool CKelSLPConfig::EditableEqualTo(const CKelSLPConfig& other) const {
  const auto editable = [](const Settings& s) {
    return std::tie(s.multicast_ttl, s.unicast_maximum_wait, s.unicast_timeouts, s.mtu, s.broadcast_addr,
                    s.use_dhcp, s.interfaces);
  };
  return editable(settings_) == editable(other.settings_);
}

bool CKelSLPConfig::EqualTo(const CKelSLPConfig& other) const {
  const auto fixed = [](const Settings& s) {
    return std::tie(s.active_da_detection, s.port, s.security_enabled, s.use_ipv4, s.use_ipv6);
  };
  return EditableEqualTo(other) && fixed(settings_) == fixed(other.settings_);
}

}  // namespace kelsd
