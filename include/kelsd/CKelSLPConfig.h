// The SLP settings that searching applications and the local SLP daemon share, and the catalogue of all SLP
// properties.
//
// A configuration record is a plain value: one thread uses an instance at a time. The static functions may be
// called from any thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kelsd/Export.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Settings common to the discovery client and the SLP daemon: network, unicast timing, security and address
/// families.
///
/// Setters refuse values that SLP could not work with and leave the record unchanged then. Settings without a
/// setter are requirements on the SLP installation: `Validate` lists those that deviate. All times are
/// milliseconds.
class KELSD_EXPORT CKelSLPConfig {
 public:
  /// The SLP properties. The numbers are part of the interface.
  enum EProperty : int {
    PROP_UNKNOWN = 0,
    PROP_ISDA = 1,
    PROP_DAHEARTBEAT = 2,
    PROP_DAATTRIBUTES = 3,
    PROP_USESCOPES = 4,
    PROP_DAADDRESSES = 5,
    PROP_TRACEDATRAFFIC = 6,
    PROP_TRACEMSG = 7,
    PROP_TRACEDROP = 8,
    PROP_TRACEREG = 9,
    PROP_APPENDLOG = 10,
    PROP_SERIALIZEDREGURL = 11,
    PROP_ISBROADCASTONLY = 12,
    PROP_PASSIVEDADETECTION = 13,
    PROP_MULTICASTTTL = 14,
    PROP_DAACTIVEDISCOVERYINTERVAL = 15,
    PROP_MULTICASTMAXIMUMWAIT = 16,
    PROP_MULTICASTTIMEOUTS = 17,
    PROP_DADISCOVERYTIMEOUTS = 18,
    PROP_DATAGRAMTIMEOUTS = 19,
    PROP_RANDOMWAITBOUND = 20,
    PROP_MTU = 21,
    PROP_INTERFACES = 22,
    PROP_SAATTRIBUTES = 23,
    PROP_LOCALE = 24,
    PROP_MAXRESULTS = 25,
    PROP_TYPEHINT = 26,
    PROP_PREFERSLPV1 = 27,
    PROP_SECURITYENABLED = 28,
    PROP_WATCHREGISTRATIONPID = 29,
    PROP_OPENSLPVERSION = 30,
    PROP_UNICASTMAXIMUMWAIT = 31,
    PROP_UNICASTTIMEOUTS = 32,
    PROP_DADISCOVERYMAXIMUMWAIT = 33,
    PROP_ACTIVEDADETECTION = 34,
    PROP_CHECKSOURCEADDR = 35,
    PROP_BROADCASTADDR = 36,
    PROP_PORT = 37,
    PROP_USEDHCP = 38,
    PROP_STALEDACHECKPERIOD = 39,
    PROP_INDEXSRVTYPE = 40,
    PROP_INDEXEDATTRIBUTES = 41,
    PROP_USEIPV6 = 42,
    PROP_USEIPV4 = 43,
    PROP_OPENSLPCONFIGFILE = 44,
    PROP_ENVCONFIGFILE = 45,
    PROP_APPCONFIGFILE = 46,
  };

  // Defaults and limits. `_DEFAULT` is the library's value (equal to `_DEFAULT_KEL`), `_DEFAULT_SLP` that of
  // the SLP standard.
  static const int MULTICASTTTL_DEFAULT;
  static const int MULTICASTTTL_MINIMUM;
  static const int MULTICASTTTL_MAXIMUM;
  static const int UNICASTMAXIMUMWAIT_DEFAULT;
  static const int UNICASTMAXIMUMWAIT_DEFAULT_SLP;
  static const int UNICASTMAXIMUMWAIT_DEFAULT_KEL;
  static const int UNICASTMAXIMUMWAIT_MINIMUM;
  static const int UNICASTTIMEOUT_MINIMUM;
  /// Timeouts that a setter keeps of a list.
  static const unsigned int TIMEOUT_LIST_MAX_VALUES;
  static const int MTU_DEFAULT;
  static const int MTU_MINIMUM;
  static const bool USEDHCP_DEFAULT;
  static const bool ACTIVEDADETECTION_DEFAULT;
  static const int PORT_DEFAULT;
  static const bool SECURITYENABLED_DEFAULT;
  static const bool USEIPV4_DEFAULT;
  static const bool USEIPV6_DEFAULT;

  // Defaults that are lists or texts: a new value each call.
  static std::vector<int> UNICASTTIMEOUTS_DEFAULT();
  static std::vector<int> UNICASTTIMEOUTS_DEFAULT_SLP();
  static std::vector<int> UNICASTTIMEOUTS_DEFAULT_KEL();
  static std::string BROADCASTADDR_DEFAULT();
  static std::vector<std::string> INTERFACES_DEFAULT();

  /// The label of `property` for people; "unknown" for anything that is not a real property.
  static std::string ToString(EProperty property);
  /// The key of `property` as SLP and its configuration file spell it; "unknown" for anything that is not a
  /// real property.
  static std::string ToStringKey(EProperty property);
  /// The property with exactly this key (letter case counts); otherwise PROP_UNKNOWN, and `*not_found` is
  /// raised unless the pointer is null. The flag is never lowered.
  static EProperty StringKeyToEProperty(const std::string& key, bool* not_found);
  /// Whether `value` is the number of an enumerator, PROP_UNKNOWN included.
  static bool IsValidEProperty(const int& value);
  /// All real properties in ascending order, without PROP_UNKNOWN.
  static std::vector<EProperty> GetEProperty();

  /// A record that holds the library's defaults and no OpenSLP version.
  CKelSLPConfig();
  /// A record of values read elsewhere. Each value that is refused is appended to `problems` and leaves its
  /// default; maximum wait and timeouts of unicast requests are taken together or not at all.
  CKelSLPConfig(const int& multicast_ttl, const int& unicast_maximum_wait,
                const std::vector<int>& unicast_timeouts, const int& mtu, const std::string& broadcast_addr,
                const bool& use_dhcp, const std::vector<std::string>& interfaces,
                const bool& active_da_detection, const int& port, const bool& security_enabled,
                const bool& use_ipv4, const bool& use_ipv6, const std::string& open_slp_version,
                std::vector<SResult>& problems);
  CKelSLPConfig(const CKelSLPConfig&) = default;
  CKelSLPConfig(CKelSLPConfig&&) noexcept = default;
  CKelSLPConfig& operator=(const CKelSLPConfig&) = default;
  CKelSLPConfig& operator=(CKelSLPConfig&&) noexcept = default;
  virtual ~CKelSLPConfig();

  /// Brings back the library's defaults; the OpenSLP version stays.
  virtual void Clear();
  /// What this record asks of the SLP installation otherwise than the library needs it: a sentence for each
  /// deviating property; empty when all is well.
  virtual std::map<EProperty, std::string> Validate() const;

  /// Time-to-live of multicast datagrams, 1 to 255.
  int GetMulticastTTL() const;
  /// Longest duration of a whole unicast request, at least 501 and more than its first timeout.
  int GetUnicastMaximumWait() const;
  /// Retransmission timeouts of a unicast request.
  std::vector<int> GetUnicastTimeouts() const;
  /// Largest datagram in bytes, at least 576; the agent takes values beyond 65507 for the default.
  int GetMTU() const;
  /// Address that is used instead of multicast when broadcasting.
  std::string GetBroadcastAddr() const;
  /// Whether SLP settings are taken from DHCP; without effect in the agent of this project.
  bool GetUseDHCP() const;
  /// Network interfaces to use; empty for all.
  std::vector<std::string> GetInterfaces() const;
  /// Whether directory agents are looked for actively.
  bool GetActiveDADetection() const;
  /// The SLP port.
  int GetPPort() const;
  /// Whether SLP authentication is on; without effect in the agent of this project.
  bool GetSecurityEnabled() const;
  /// Whether SLP runs over IPv4; without effect in the agent of this project.
  bool GetUseIPv4() const;
  /// Whether SLP runs over IPv6.
  bool GetUseIPv6() const;
  /// Version that the SLP installation reports.
  std::string GetOpenSLPVersion() const;

  // Each refusal is ERR_INVALID_PARAMETER with a sentence that names limit and value, and changes nothing.
  [[nodiscard]] SResult SetMulticastTTL(const int& multicast_ttl);
  /// Checked against the timeouts that the record holds.
  [[nodiscard]] SResult SetUnicastMaximumWait(const int& maximum_wait);
  /// Checked against the maximum wait that the record holds; keeps the first TIMEOUT_LIST_MAX_VALUES values.
  [[nodiscard]] SResult SetUnicastTimeouts(const std::vector<int>& timeouts);
  /// Sets both; checks the wait against the first timeout, but not the single timeouts.
  [[nodiscard]] SResult SetUnicasttMaximumWaitAndTimeouts(const int& maximum_wait,
                                                          const std::vector<int>& timeouts);
  [[nodiscard]] SResult SetMTU(const int& mtu);
  /// Stored trimmed and in upper case, not checked.
  void SetBroadcastAddr(const std::string& broadcast_addr);
  void SetUseDHCP(const bool& use_dhcp);
  /// Stored trimmed and in upper case, without empty entries, in the order given; an entry that stands in the
  /// list already just as it is given is left out.
  void SetInterfaces(const std::vector<std::string>& interfaces);

  // The checks that the setters make; a failure is ERR_INVALID_PARAMETER.
  [[nodiscard]] static SResult ValidateMulticastTTL(const int& multicast_ttl);
  [[nodiscard]] static SResult ValidateUnicastMaximumWait(const int& maximum_wait,
                                                          const std::vector<int>& timeouts);
  [[nodiscard]] static SResult ValidateUnicastTimeouts(const std::vector<int>& timeouts,
                                                       const int& maximum_wait);
  [[nodiscard]] static SResult ValidateMTU(const int& mtu);

  // Whether a setting holds the default of the SLP standard.
  bool IsMulticastTTLDefaultSLP() const;
  bool IsUnicastMaximumWaitDefaultSLP() const;
  bool IsUnicastTimeoutsDefaultSLP() const;
  bool IsMTUDefaultSLP() const;
  bool IsBroadcastAddrDefaultSLP() const;
  bool IsUseDHCPDefaultSLP() const;
  bool IsInterfacesDefaultSLP() const;
  bool IsActiveDADetectionDefaultSLP() const;
  /// 1 or 0.
  int IsPortDefaultSLP() const;
  bool IsSecurityEnabledDefaultSLP() const;
  bool IsUseIPv4DefaultSLP() const;
  bool IsUseIPv6DefaultSLP() const;

  /// Whether all settings that have a setter are equal.
  bool EditableEqualTo(const CKelSLPConfig& other) const;
  /// Whether all settings but the OpenSLP version are equal.
  bool EqualTo(const CKelSLPConfig& other) const;

 private:
  /// The settings that `Clear` brings back, with their defaults.
  struct Settings {
    int multicast_ttl = MULTICASTTTL_DEFAULT;
    int unicast_maximum_wait = UNICASTMAXIMUMWAIT_DEFAULT;
    std::vector<int> unicast_timeouts = UNICASTTIMEOUTS_DEFAULT();
    int mtu = MTU_DEFAULT;
    std::string broadcast_addr = BROADCASTADDR_DEFAULT();
    bool use_dhcp = USEDHCP_DEFAULT;
    std::vector<std::string> interfaces = INTERFACES_DEFAULT();
    bool active_da_detection = ACTIVEDADETECTION_DEFAULT;
    int port = PORT_DEFAULT;
    bool security_enabled = SECURITYENABLED_DEFAULT;
    bool use_ipv4 = USEIPV4_DEFAULT;
    bool use_ipv6 = USEIPV6_DEFAULT;
  };

  Settings settings_;
  std::string open_slp_version_;
};

}  // namespace kelsd
