// Defaults and limits of the settings of a searching application, and whether a setting holds the default of
// the SLP standard.
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"

namespace kelsd {

const int CKelSLPClientConfig::MAXRESULTS_DEFAULT = -1;
const int CKelSLPClientConfig::MAXRESULTS_MINIMUM = -1;
const int CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT_SLP = 5000;
const int CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT_KEL = 4000;
const int CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT = DADISCOVERYMAXIMUMWAIT_DEFAULT_KEL;
const int CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_MINIMUM = 501;
const int CKelSLPClientConfig::DADISCOVERYTIMEOUT_MINIMUM = 100;
const int CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT_SLP = 15000;
const int CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT_KEL = 6000;
const int CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT = MULTICASTMAXIMUMWAIT_DEFAULT_KEL;
const int CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_MINIMUM = 501;
const int CKelSLPClientConfig::MULTICASTTIMEOUT_MINIMUM = 100;
const int CKelSLPClientConfig::TIMEOUT_DEFAULT =
    DADISCOVERYMAXIMUMWAIT_DEFAULT + MULTICASTMAXIMUMWAIT_DEFAULT;

std::vector<int> CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT() {
  return DADISCOVERYTIMEOUTS_DEFAULT_KEL();
}

std::vector<int> CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT_SLP() {
  return {500, 750, 1000, 1500, 2000, 3000};
}

std::vector<int> CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT_KEL() {
  return {500, 750, 1100, 1600};
}

std::vector<int> CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT() {
  return MULTICASTTIMEOUTS_DEFAULT_KEL();
}

std::vector<int> CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT_SLP() {
  return {500, 750, 1000, 1500, 2000, 3000};
}

std::vector<int> CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT_KEL() {
  return {500, 750, 1100, 1600, 2000};
}

bool CKelSLPClientConfig::IsMaxResultsDefaultSLP() const {
  return settings_.max_results == MAXRESULTS_DEFAULT;
}

bool CKelSLPClientConfig::IsDADiscoveryMaximumWaitDefaultSLP() const {
  return settings_.da_discovery_maximum_wait == DADISCOVERYMAXIMUMWAIT_DEFAULT_SLP;
}

bool CKelSLPClientConfig::IsDADiscoveryTimeoutsDefaultSLP() const {
  return settings_.da_discovery_timeouts == DADISCOVERYTIMEOUTS_DEFAULT_SLP();
}

bool CKelSLPClientConfig::IsMulticastMaximumWaitDefaultSLP() const {
  return settings_.multicast_maximum_wait == MULTICASTMAXIMUMWAIT_DEFAULT_SLP;
}

bool CKelSLPClientConfig::IsMulticastTimeoutsDefaultSLP() const {
  return settings_.multicast_timeouts == MULTICASTTIMEOUTS_DEFAULT_SLP();
}

}  // namespace kelsd
