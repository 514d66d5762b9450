// Reading, checking and changing the common settings one by one.
#include <string>
#include <vector>

#include "config/outcomes.h"
#include "config/timing_rules.h"
#include "foundation/conversions.h"
#include "foundation/text.h"
#include "kelsd/CKelSLPConfig.h"

namespace kelsd {
namespace {

constexpr const char* kUnicast = "unicast";

}  // namespace

int CKelSLPConfig::GetMulticastTTL() const {
  return settings_.multicast_ttl;
}

int CKelSLPConfig::GetUnicastMaximumWait() const {
  return settings_.unicast_maximum_wait;
}

std::vector<int> CKelSLPConfig::GetUnicastTimeouts() const {
  return settings_.unicast_timeouts;
}

int CKelSLPConfig::GetMTU() const {
  return settings_.mtu;
}

std::string CKelSLPConfig::GetBroadcastAddr() const {
  return settings_.broadcast_addr;
}

bool CKelSLPConfig::GetUseDHCP() const {
  return settings_.use_dhcp;
}

std::vector<std::string> CKelSLPConfig::GetInterfaces() const {
  return settings_.interfaces;
}

bool CKelSLPConfig::GetActiveDADetection() const {
  return settings_.active_da_detection;
}

int CKelSLPConfig::GetPPort() const {
  return settings_.port;
}

bool CKelSLPConfig::GetSecurityEnabled() const {
  return settings_.security_enabled;
}

bool CKelSLPConfig::GetUseIPv4() const {
  return settings_.use_ipv4;
}

bool CKelSLPConfig::GetUseIPv6() const {
  return settings_.use_ipv6;
}

std::string CKelSLPConfig::GetOpenSLPVersion() const {
  return open_slp_version_;
}

SResult CKelSLPConfig::SetMulticastTTL(const int& multicast_ttl) {
  return StoreIfOk(ValidateMulticastTTL(multicast_ttl), "kelsd::CKelSLPConfig::SetMulticastTTL",
                   settings_.multicast_ttl, multicast_ttl);
}

SResult CKelSLPConfig::SetUnicastMaximumWait(const int& maximum_wait) {
  return StoreIfOk(ValidateUnicastMaximumWait(maximum_wait, settings_.unicast_timeouts),
                   "kelsd::CKelSLPConfig::SetUnicastMaximumWait", settings_.unicast_maximum_wait,
                   maximum_wait);
}

SResult CKelSLPConfig::SetUnicastTimeouts(const std::vector<int>& timeouts) {
  return StoreIfOk(ValidateUnicastTimeouts(timeouts, settings_.unicast_maximum_wait),
                   "kelsd::CKelSLPConfig::SetUnicastTimeouts", settings_.unicast_timeouts,
                   FirstTimeouts(timeouts));
}

SResult CKelSLPConfig::SetUnicasttMaximumWaitAndTimeouts(const int& maximum_wait,
                                                         const std::vector<int>& timeouts) {
  const SResult outcome = ValidateUnicastMaximumWait(maximum_wait, timeouts);
  if (outcome.IsOk()) {
    settings_.unicast_timeouts = FirstTimeouts(timeouts);
    settings_.unicast_maximum_wait = maximum_wait;
  }
  return PassOn(outcome, "kelsd::CKelSLPConfig::SetUnicasttMaximumWaitAndTimeouts");
}

SResult CKelSLPConfig::SetMTU(const int& mtu) {
  return StoreIfOk(ValidateMTU(mtu), "kelsd::CKelSLPConfig::SetMTU", settings_.mtu, mtu);
}

void CKelSLPConfig::SetBroadcastAddr(const std::string& broadcast_addr) {
  settings_.broadcast_addr = ToUpper(Trim(broadcast_addr));
}

void CKelSLPConfig::SetUseDHCP(const bool& use_dhcp) {
  settings_.use_dhcp = use_dhcp;
}

void CKelSLPConfig::SetInterfaces(const std::vector<std::string>& interfaces) {
  settings_.interfaces = CleanList(interfaces, false);
}

SResult CKelSLPConfig::ValidateMulticastTTL(const int& multicast_ttl) {
  if (multicast_ttl < MULTICASTTTL_MINIMUM || multicast_ttl > MULTICASTTTL_MAXIMUM) {
    return SResult(SResult::ERR_INVALID_PARAMETER,
                   "Multicast TTL is out of range [" + Stringify(MULTICASTTTL_MINIMUM) + ", " +
                       Stringify(MULTICASTTTL_MAXIMUM) + "]: " + Stringify(multicast_ttl) + ".",
                   "kelsd::CKelSLPConfig::ValidateMulticastTTL");
  }
  return SResult(SResult::ERR_SUCCESS);
}

SResult CKelSLPConfig::ValidateUnicastMaximumWait(const int& maximum_wait, const std::vector<int>& timeouts) {
  return PassOn(ValidateMaximumWait(maximum_wait, timeouts, UNICASTMAXIMUMWAIT_MINIMUM, kUnicast),
                "kelsd::CKelSLPConfig::ValidateUnicastMaximumWait");
}

SResult CKelSLPConfig::ValidateUnicastTimeouts(const std::vector<int>& timeouts, const int& maximum_wait) {
  return PassOn(ValidateTimeouts(timeouts, maximum_wait, UNICASTTIMEOUT_MINIMUM, kUnicast),
                "kelsd::CKelSLPConfig::ValidateUnicastTimeouts");
}

SResult CKelSLPConfig::ValidateMTU(const int& mtu) {
  return AtLeast(mtu, MTU_MINIMUM, "MTU", "kelsd::CKelSLPConfig::ValidateMTU");
}

}  // namespace kelsd
