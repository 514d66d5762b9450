// The REST interface of the terminal, the process that runs and supervises a ZD server, as a service type.
#pragma once

#include <string>
#include <vector>

#include "kelsd/CKelServiceTypeTamroBase.h"
#include "kelsd/Export.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"

namespace kelsd {

/// Service type "service:terminal.tamro:http". No accessor fails: a stored text that cannot be read counts as
/// not set, false or port 0.
class KELSD_EXPORT CKelServiceTypeZDTerminalREST : public CKelServiceTypeTamroBase {
 public:
  /// What the terminal is doing.
  enum EOperation : int {
    OPERATION_NOT_SET = 0,
    OPERATION_NONE = 1,
    OPERATION_SERVER = 2,
    OPERATION_BACKUP = 3,
    OPERATION_RESTORE = 4,
  };

  /// The mode in which the server runs.
  enum EServerMode : int {
    SERVER_MODE_NOT_SET = 0,
    SERVER_MODE_LOCALHOST = 1,
    SERVER_MODE_54FREE = 2,
    SERVER_MODE_MULTIUSER = 3,
    SERVER_MODE_MAIN = 4,
    SERVER_MODE_REPLICATION = 5,
    SERVER_MODE_NS_ONLY = 6,
    SERVER_MODE_54FREE_SERVERONLY = 7,
    SERVER_MODE_MULTIUSER_SERVERONLY = 8,
    SERVER_MODE_DA_ONLY = 9,
  };

  /// Whether the server or its naming service runs.
  enum EExecutableStatus : int {
    EXECUTABLE_STATUS_NOT_SET = 0,
    EXECUTABLE_STATUS_STOPPED = 1,
    EXECUTABLE_STATUS_RUNNING = 2,
  };

  /// A service to register, with all attributes at their defaults. `lifetime` is in seconds.
  CKelServiceTypeZDTerminalREST(const std::string& address, unsigned short lifetime);
  /// A service that was found: empty address, lifetime 300 seconds, the found values over the defaults.
  CKelServiceTypeZDTerminalREST(const SKelServiceAttributeSearchResult& result);
  ~CKelServiceTypeZDTerminalREST() override;

  std::string GetTypeString() const override;

  // The value with the text `text`, compared exactly; the empty text is the value 0. For any other text the
  // result is 0 too and `*unknown` becomes true, unless `unknown` is null. The flag is never set to false.
  static EOperation StringToEOperation(const std::string& text, bool* unknown);
  static EServerMode StringToEServerMode(const std::string& text, bool* unknown);
  static EExecutableStatus StringToEExecutableStatus(const std::string& text, bool* unknown);

  // The text of a value; empty for 0 and for any number that is no value of the enumeration.
  static std::string ToString(const EOperation& operation);
  static std::string ToString(const EServerMode& mode);
  static std::string ToString(const EExecutableStatus& status);
  using IKelServiceType::ToString;

  EOperation GetAttrOperation() const;
  void SetAttrOperation(const EOperation& operation);
  EServerMode GetAttrServerMode() const;
  void SetAttrServerMode(const EServerMode& mode);
  EServerMode GetAttrServerModeLastStarted() const;
  void SetAttrServerModeLastStarted(const EServerMode& mode);
  EExecutableStatus GetAttrServerZDStatus() const;
  void SetAttrServerZDStatus(const EExecutableStatus& status);
  EExecutableStatus GetAttrServerNSStatus() const;
  void SetAttrServerNSStatus(const EExecutableStatus& status);
  std::string GetAttrServerName() const;
  void SetAttrServerName(const std::string& name);
  std::string GetAttrServerNSName() const;
  void SetAttrServerNSName(const std::string& name);
  unsigned short GetAttrServerNSPort() const;
  void SetAttrServerNSPort(const unsigned short& port);
  std::string GetAttrServerNetworkAdapter() const;
  void SetAttrServerNetworkAdapter(const std::string& adapter);
  std::string GetAttrPartnerTerminal() const;
  void SetAttrPartnerTerminal(const std::string& terminal);
  std::string GetAttrPartnerServerName() const;
  void SetAttrPartnerServerName(const std::string& name);
  std::string GetAttrPartnerNSName() const;
  void SetAttrPartnerNSName(const std::string& name);
  bool GetAttrServerClusterStatus() const;
  void SetAttrServerClusterStatus(const bool& clustered);
  /// Whether the machine is an SLP directory agent.
  bool GetAttrServicediscoveryIsDa() const;
  void SetAttrServicediscoveryIsDa(const bool& is_da);
  /// The addresses of the directory agents, trimmed, in upper case and sorted.
  std::vector<std::string> GetAttrServicediscoveryDaAddresses() const;
  void SetAttrServicediscoveryDaAddresses(const std::vector<std::string>& addresses);
  std::string GetAttrVersionZD() const;
  void SetAttrVersionZD(const std::string& version);
};

}  // namespace kelsd
