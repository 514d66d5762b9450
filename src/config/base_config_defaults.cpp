// Defaults and limits of the common settings, and whether a setting holds the default of the SLP standard.
#include <string>
#include <vector>

#include "kelsd/CKelSLPConfig.h"

namespace kelsd {

const int CKelSLPConfig::MULTICASTTTL_DEFAULT = 255;
const int CKelSLPConfig::MULTICASTTTL_MINIMUM = 1;
const int CKelSLPConfig::MULTICASTTTL_MAXIMUM = 255;
const int CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT_SLP = 5000;
const int CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT_KEL = 4000;
const int CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT = UNICASTMAXIMUMWAIT_DEFAULT_KEL;
const int CKelSLPConfig::UNICASTMAXIMUMWAIT_MINIMUM = 501;
const int CKelSLPConfig::UNICASTTIMEOUT_MINIMUM = 100;
const unsigned int CKelSLPConfig::TIMEOUT_LIST_MAX_VALUES = 6;
const int CKelSLPConfig::MTU_DEFAULT = 1400;
const int CKelSLPConfig::MTU_MINIMUM = 576;
const bool CKelSLPConfig::USEDHCP_DEFAULT = true;
const bool CKelSLPConfig::ACTIVEDADETECTION_DEFAULT = true;
const int CKelSLPConfig::PORT_DEFAULT = 427;
const bool CKelSLPConfig::SECURITYENABLED_DEFAULT = false;
const bool CKelSLPConfig::USEIPV4_DEFAULT = true;
const bool CKelSLPConfig::USEIPV6_DEFAULT = false;

std::vector<int> CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT() {
  return UNICASTTIMEOUTS_DEFAULT_KEL();
}

std::vector<int> CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP() {
  return {500, 750, 1000, 1500, 2000, 3000};
}

std::vector<int> CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_KEL() {
  return {500, 750, 1100, 1600};
}

std::string CKelSLPConfig::BROADCASTADDR_DEFAULT() {
  return "255.255.255.255";
}

std::vector<std::string> CKelSLPConfig::INTERFACES_DEFAULT() {
  return {};
}

bool CKelSLPConfig::IsMulticastTTLDefaultSLP() const {
  return settings_.multicast_ttl == MULTICASTTTL_DEFAULT;
}

bool CKelSLPConfig::IsUnicastMaximumWaitDefaultSLP() const {
  return settings_.unicast_maximum_wait == UNICASTMAXIMUMWAIT_DEFAULT_SLP;
}

bool CKelSLPConfig::IsUnicastTimeoutsDefaultSLP() const {
  return settings_.unicast_timeouts == UNICASTTIMEOUTS_DEFAULT_SLP();
}

bool CKelSLPConfig::IsMTUDefaultSLP() const {
  return settings_.mtu == MTU_DEFAULT;
}

bool CKelSLPConfig::IsBroadcastAddrDefaultSLP() const {
  return settings_.broadcast_addr == BROADCASTADDR_DEFAULT();
}

bool CKelSLPConfig::IsUseDHCPDefaultSLP() const {
  return settings_.use_dhcp == USEDHCP_DEFAULT;
}

bool CKelSLPConfig::IsInterfacesDefaultSLP() const {
  return settings_.interfaces == INTERFACES_DEFAULT();
}

bool CKelSLPConfig::IsActiveDADetectionDefaultSLP() const {
  return settings_.active_da_detection == ACTIVEDADETECTION_DEFAULT;
}

int CKelSLPConfig::IsPortDefaultSLP() const {
  return settings_.port == PORT_DEFAULT ? 1 : 0;
}

bool CKelSLPConfig::IsSecurityEnabledDefaultSLP() const {
  return settings_.security_enabled == SECURITYENABLED_DEFAULT;
}

bool CKelSLPConfig::IsUseIPv4DefaultSLP() const {
  return settings_.use_ipv4 == USEIPV4_DEFAULT;
}

bool CKelSLPConfig::IsUseIPv6DefaultSLP() const {
  return settings_.use_ipv6 == USEIPV6_DEFAULT;
}

}  // namespace kelsd
