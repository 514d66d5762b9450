// The SLP settings of a searching application. A plain value: one thread uses an instance at a time; the
// static functions may be called from any thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "kelsd/Export.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// The common settings and those that govern a search: how many results, and how long it looks for directory
/// agents and collects multicast answers. `SetTimeout` derives all waits from one duration. All times are
/// milliseconds.
class KELSD_EXPORT CKelSLPClientConfig : public CKelSLPConfig {
 public:
  // Defaults and limits, named as those of the common settings.
  static const int MAXRESULTS_DEFAULT;
  static const int MAXRESULTS_MINIMUM;
  static const int TIMEOUT_DEFAULT;
  static const int DADISCOVERYMAXIMUMWAIT_DEFAULT;
  static const int DADISCOVERYMAXIMUMWAIT_DEFAULT_SLP;
  static const int DADISCOVERYMAXIMUMWAIT_DEFAULT_KEL;
  static const int DADISCOVERYMAXIMUMWAIT_MINIMUM;
  static const int DADISCOVERYTIMEOUT_MINIMUM;
  static const int MULTICASTMAXIMUMWAIT_DEFAULT;
  static const int MULTICASTMAXIMUMWAIT_DEFAULT_SLP;
  static const int MULTICASTMAXIMUMWAIT_DEFAULT_KEL;
  static const int MULTICASTMAXIMUMWAIT_MINIMUM;
  static const int MULTICASTTIMEOUT_MINIMUM;

  // A new list each call.
  static std::vector<int> DADISCOVERYTIMEOUTS_DEFAULT();
  static std::vector<int> DADISCOVERYTIMEOUTS_DEFAULT_SLP();
  static std::vector<int> DADISCOVERYTIMEOUTS_DEFAULT_KEL();
  static std::vector<int> MULTICASTTIMEOUTS_DEFAULT();
  static std::vector<int> MULTICASTTIMEOUTS_DEFAULT_SLP();
  static std::vector<int> MULTICASTTIMEOUTS_DEFAULT_KEL();

  /// A record that holds the library's defaults.
  CKelSLPClientConfig();
  /// A record of values read elsewhere. Each value that is refused is appended to `problems` and leaves its
  /// default; a maximum wait and its timeouts are taken together or not at all.
  CKelSLPClientConfig(const int& multicast_ttl, const int& unicast_maximum_wait,
                      const std::vector<int>& unicast_timeouts, const int& mtu,
                      const std::string& broadcast_addr, const bool& use_dhcp,
                      const std::vector<std::string>& interfaces, const bool& active_da_detection,
                      const int& port, const bool& security_enabled, const bool& use_ipv4,
                      const bool& use_ipv6, const std::string& open_slp_version, const int& max_results,
                      const int& da_discovery_maximum_wait, const std::vector<int>& da_discovery_timeouts,
                      const int& multicast_maximum_wait, const std::vector<int>& multicast_timeouts,
                      std::vector<SResult>& problems);
  CKelSLPClientConfig(const CKelSLPClientConfig&) = default;
  CKelSLPClientConfig(CKelSLPClientConfig&&) noexcept = default;
  CKelSLPClientConfig& operator=(const CKelSLPClientConfig&) = default;
  CKelSLPClientConfig& operator=(CKelSLPClientConfig&&) noexcept = default;
  ~CKelSLPClientConfig() override;

  void Clear() override;
  /// The common requirements; a client has none of its own.
  std::map<EProperty, std::string> Validate() const override;

  /// Most results of a search; -1 (and 0) for no limit.
  int GetMaxResults() const;
  /// Longest duration of directory agent discovery, at least 501 and more than its first timeout.
  int GetDADiscoveryMaximumWait() const;
  /// Retransmission timeouts of directory agent discovery.
  std::vector<int> GetDADiscoveryTimeouts() const;
  /// Longest duration of a multicast request, at least 501 and more than its first timeout.
  int GetMulticastMaximumWait() const;
  /// Retransmission timeouts of a multicast request.
  std::vector<int> GetMulticastTimeouts() const;
  /// Duration of a whole search: what `SetTimeout` was given, or the sum of the two waits once one was set by
  /// itself (the largest integer at most).
  int GetTimeout();

  // Each refusal is ERR_INVALID_PARAMETER with a sentence that names limit and value, and changes nothing.
  // Setting a wait brings the timeout up to date; a list keeps its first TIMEOUT_LIST_MAX_VALUES values; the
  // combined setters check the wait against the first timeout, but not the single timeouts.
  [[nodiscard]] SResult SetMaxResults(const int& max_results);
  [[nodiscard]] SResult SetDADiscoveryMaximumWait(const int& maximum_wait);
  [[nodiscard]] SResult SetDADiscoveryTimeouts(const std::vector<int>& timeouts);
  [[nodiscard]] SResult SetDADiscoveryMaximumWaitAndTimeouts(const int& maximum_wait,
                                                             const std::vector<int>& timeouts);
  [[nodiscard]] SResult SetMulticastMaximumWait(const int& maximum_wait);
  [[nodiscard]] SResult SetMulticastTimeouts(const std::vector<int>& timeouts);
  [[nodiscard]] SResult SetMulticastMaximumWaitAndTimeouts(const int& maximum_wait,
                                                           const std::vector<int>& timeouts);
  /// Divides `timeout` among directory agent discovery, multicast and unicast in the proportions of the
  /// defaults. Each keeps the default timeouts of its kind and gets those of the SLP standard that fit behind
  /// them. The smallest timeout accepted is 1252; one that the record has already changes nothing.
  [[nodiscard]] SResult SetTimeout(const int& timeout);

  // The checks that the setters make; a failure is ERR_INVALID_PARAMETER.
  [[nodiscard]] static SResult ValidateMaxResults(const int& max_results);
  [[nodiscard]] static SResult ValidateDADiscoveryMaximumWait(const int& maximum_wait,
                                                              const std::vector<int>& timeouts);
  [[nodiscard]] static SResult ValidateDADiscoveryTimeouts(const std::vector<int>& timeouts,
                                                           const int& maximum_wait);
  [[nodiscard]] static SResult ValidateMulticastMaximumWait(const int& maximum_wait,
                                                            const std::vector<int>& timeouts);
  [[nodiscard]] static SResult ValidateMulticastTimeouts(const std::vector<int>& timeouts,
                                                         const int& maximum_wait);

  // Whether a setting holds the default of the SLP standard.
  bool IsMaxResultsDefaultSLP() const;
  bool IsDADiscoveryMaximumWaitDefaultSLP() const;
  bool IsDADiscoveryTimeoutsDefaultSLP() const;
  bool IsMulticastMaximumWaitDefaultSLP() const;
  bool IsMulticastTimeoutsDefaultSLP() const;

  /// Whether all settings that have a setter are equal; the timeout follows from the waits and is not looked
  /// at.
  bool EditableEqualTo(const CKelSLPClientConfig& other) const;
  /// Whether all settings but the OpenSLP version are equal.
  bool EqualTo(const CKelSLPClientConfig& other) const;

 private:
  /// The settings that `Clear` brings back beside the common ones, with their defaults.
  struct Settings {
    int max_results = MAXRESULTS_DEFAULT;
    int da_discovery_maximum_wait = DADISCOVERYMAXIMUMWAIT_DEFAULT;
    std::vector<int> da_discovery_timeouts = DADISCOVERYTIMEOUTS_DEFAULT();
    int multicast_maximum_wait = MULTICASTMAXIMUMWAIT_DEFAULT;
    std::vector<int> multicast_timeouts = MULTICASTTIMEOUTS_DEFAULT();
    int timeout = TIMEOUT_DEFAULT;
  };

  Settings settings_;
};

}  // namespace kelsd
