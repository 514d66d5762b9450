// The settings of the local SLP daemon. A plain value: one thread uses an instance at a time; the static
// functions may be called from any thread.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "kelsd/Export.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// The common settings and those of the daemon: its role as directory agent, scopes, known directory agents,
/// indexing and logging. Settings without a setter are requirements on the daemon. `Validate` lists those
/// that deviate, and with them tracing, appending to the log and processes that are not watched; a record of
/// defaults deviates in the log and in the OpenSLP version, which it doesn't have.
class KELSD_EXPORT CKelSLPServiceConfig : public CKelSLPConfig {
 public:
  // Defaults, which are those of the SLP standard too, and limits.
  static const bool ISDA_DEFAULT;
  static const int DAHEARTBEAT_DEFAULT;
  static const int DAHEARTBEAT_MINIMUM;
  static const int STALEDACHECKPERIOD_DEFAULT;
  static const int STALEDACHECKPERIOD_MINIMUM;
  static const bool WATCHREGISTRATIONPID_DEFAULT;
  static const bool INDEXSRVTYPE_DEFAULT;
  static const bool TRACEDATRAFFIC_DEFAULT;
  static const bool TRACEREG_DEFAULT;
  static const bool TRACEDROP_DEFAULT;
  static const bool TRACEMSG_DEFAULT;
  static const bool APPENDLOG_DEFAULT;
  static const bool ISBROADCASTONLY_DEFAULT;
  static const bool PASSIVEDADETECTION_DEFAULT;
  static const int DAACTIVEDISCOVERYINTERVAL_DEFAULT;
  static const bool CHECKSOURCEADDR_DEFAULT;

  // A new list each call.
  static std::vector<std::string> USESCOPES_DEFAULT();
  static std::vector<std::string> DAADDRESSES_DEFAULT();
  static std::vector<std::string> INDEXEDATTRIBUTES_DEFAULT();

  /// A record that holds the library's defaults.
  CKelSLPServiceConfig();
  /// A record of values read elsewhere. Each value that is refused is appended to `problems` and leaves its
  /// default.
  CKelSLPServiceConfig(const int& multicast_ttl, const int& unicast_maximum_wait,
                       const std::vector<int>& unicast_timeouts, const int& mtu,
                       const std::string& broadcast_addr, const bool& use_dhcp,
                       const std::vector<std::string>& interfaces, const bool& active_da_detection,
                       const int& port, const bool& security_enabled, const bool& use_ipv4,
                       const bool& use_ipv6, const std::string& open_slp_version, const bool& is_da,
                       const int& da_heart_beat, const int& stale_da_check_period,
                       const std::vector<std::string>& use_scopes,
                       const std::vector<std::string>& da_addresses, const bool& watch_registration_pid,
                       const bool& index_srvtype, const std::vector<std::string>& indexed_attributes,
                       const bool& trace_da_traffic, const bool& trace_reg, const bool& trace_drop,
                       const bool& trace_msg, const bool& append_log, const bool& is_broadcast_only,
                       const bool& passive_da_detection, const int& da_active_discovery_interval,
                       const bool& check_source_addr, std::vector<SResult>& problems);
  CKelSLPServiceConfig(const CKelSLPServiceConfig&) = default;
  CKelSLPServiceConfig(CKelSLPServiceConfig&&) noexcept = default;
  CKelSLPServiceConfig& operator=(const CKelSLPServiceConfig&) = default;
  CKelSLPServiceConfig& operator=(CKelSLPServiceConfig&&) noexcept = default;
  ~CKelSLPServiceConfig() override;

  void Clear() override;
  /// The common requirements and those on the daemon.
  std::map<EProperty, std::string> Validate() const override;

  /// Whether the daemon is a directory agent.
  bool GetIsDA() const;
  /// Seconds between the advertisements of a directory agent, at least 2000.
  int GetDAHeartBeat() const;
  /// Seconds between two checks for vanished directory agents; 0 for none.
  int GetStaleDACheckPeriod() const;
  /// Scopes that the daemon serves, in upper case.
  std::vector<std::string> GetUseScopes() const;
  /// Addresses of known directory agents, in upper case.
  std::vector<std::string> GetDAAddresses() const;
  /// Whether services of processes that have ended are dropped.
  bool GetWatchRegistrationPID() const;
  /// Whether registrations are indexed by service type; without effect in the agent of this project.
  bool GetIndexSrvtype() const;
  /// Attributes by which registrations are indexed, in lower case; without effect in the agent of this
  /// project.
  std::vector<std::string> GetIndexedAttributes() const;
  /// Whether traffic with directory agents is logged.
  bool GetTraceDATraffic() const;
  /// Whether registrations are logged.
  bool GetTraceReg() const;
  /// Whether dropped messages are logged.
  bool GetTraceDrop() const;
  /// Whether all messages are logged.
  bool GetTraceMsg() const;
  /// Whether the log is continued rather than begun anew.
  bool GetAppendLog() const;
  /// Whether broadcast is used instead of multicast.
  bool GetIsBroadcastOnly() const;
  /// Whether unsolicited advertisements of directory agents are listened to.
  bool GetPassiveDADetection() const;
  /// Seconds between two active searches for directory agents; 0 for none.
  int GetDAActiveDiscoveryInterval() const;
  /// Whether a directory agent takes services from their own host only; a service agent always does.
  bool GetCheckSourceAddr() const;

  void SetIsDA(const bool& is_da);
  /// Refuses less than 2000 with ERR_INVALID_PARAMETER.
  [[nodiscard]] SResult SetDAHeartBeat(const int& da_heart_beat);
  /// Refuses less than 0 with ERR_INVALID_PARAMETER.
  [[nodiscard]] SResult SetStaleDACheckPeriod(const int& stale_da_check_period);
  // Lists are stored trimmed, in one letter case, without empty entries, in the order given; an entry that
  // stands in the list already just as it is given is left out.

  /// Upper case. An empty list stands for the default scope; a list of blank entries leaves no scope.
  void SetUseScopes(const std::vector<std::string>& use_scopes);
  /// Upper case.
  void SetDAAddresses(const std::vector<std::string>& da_addresses);
  void SetWatchRegistrationPID(const bool& watch_registration_pid);
  void SetIndexSrvtype(const bool& index_srvtype);
  /// Lower case.
  void SetIndexedAttributes(const std::vector<std::string>& indexed_attributes);
  void SetTraceDATraffic(const bool& trace_da_traffic);
  void SetTraceReg(const bool& trace_reg);
  void SetTraceDrop(const bool& trace_drop);
  void SetTraceMsg(const bool& trace_msg);
  void SetAppendLog(const bool& append_log);

  // The checks that the setters make; a failure is ERR_INVALID_PARAMETER.
  [[nodiscard]] static SResult ValidateDAHeartBeat(const int& da_heart_beat);
  [[nodiscard]] static SResult ValidateStaleDACheckPeriod(const int& stale_da_check_period);

  // Whether a setting holds its default.
  bool IsIsDADefaultSLP() const;
  bool IsDAHeartBeatDefaultSLP() const;
  bool IsStaleDACheckPeriodDefaultSLP() const;
  bool IsUseScopesDefaultSLP() const;
  bool IsDAAddressesDefaultSLP() const;
  bool IsWatchRegistrationPIDDefaultSLP() const;
  bool IsIndexSrvtypeDefaultSLP() const;
  bool IsIndexedAttributesDefaultSLP() const;
  bool IsTraceDATrafficDefaultSLP() const;
  bool IsTraceRegDefaultSLP() const;
  bool IsTraceDropDefaultSLP() const;
  bool IsTraceMsgDefaultSLP() const;
  bool IsAppendLogDefaultSLP() const;
  bool IsIsBroadcastOnlyDefaultSLP() const;
  bool IsPassiveDADetectionDefaultSLP() const;
  bool IsDAActiveDiscoveryIntervalDefaultSLP() const;
  bool IsCheckSourceAddrDefaultSLP() const;

  /// Whether all settings that have a setter are equal.
  bool EditableEqualTo(const CKelSLPServiceConfig& other) const;
  /// Whether all settings but the OpenSLP version are equal.
  bool EqualTo(const CKelSLPServiceConfig& other) const;

 private:
  /// The settings that `Clear` brings back beside the common ones, with their defaults.
  struct Settings {
    bool is_da = ISDA_DEFAULT;
    int da_heart_beat = DAHEARTBEAT_DEFAULT;
    int stale_da_check_period = STALEDACHECKPERIOD_DEFAULT;
    std::vector<std::string> use_scopes = USESCOPES_DEFAULT();
    std::vector<std::string> da_addresses = DAADDRESSES_DEFAULT();
    bool watch_registration_pid = WATCHREGISTRATIONPID_DEFAULT;
    bool index_srvtype = INDEXSRVTYPE_DEFAULT;
    std::vector<std::string> indexed_attributes = INDEXEDATTRIBUTES_DEFAULT();
    bool trace_da_traffic = TRACEDATRAFFIC_DEFAULT;
    bool trace_reg = TRACEREG_DEFAULT;
    bool trace_drop = TRACEDROP_DEFAULT;
    bool trace_msg = TRACEMSG_DEFAULT;
    bool append_log = APPENDLOG_DEFAULT;
    bool is_broadcast_only = ISBROADCASTONLY_DEFAULT;
    bool passive_da_detection = PASSIVEDADETECTION_DEFAULT;
    int da_active_discovery_interval = DAACTIVEDISCOVERYINTERVAL_DEFAULT;
    bool check_source_addr = CHECKSOURCEADDR_DEFAULT;
  };

  Settings settings_;
};

}  // namespace kelsd
