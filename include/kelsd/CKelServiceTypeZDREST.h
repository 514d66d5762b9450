// The REST interface of the ZD server as a service type.
#pragma once

#include <string>
#include <vector>

#include "kelsd/CKelServiceTypeTamroBase.h"
#include "kelsd/Export.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"

namespace kelsd {

/// Service type "service:zdrest.tamro:http". No accessor fails: a stored text that cannot be read counts as
/// port 0 or as status `unknown`.
class KELSD_EXPORT CKelServiceTypeZDREST : public CKelServiceTypeTamroBase {
 public:
  enum EZDConnectionStatus : int {
    unknown = 0,
    connected = 1,
    connection_lost = 2,
  };

  /// A service to register, with all attributes at their defaults. `lifetime` is in seconds.
  CKelServiceTypeZDREST(const std::string& address, unsigned short lifetime);
  /// A service that was found: empty address, lifetime 300 seconds, the found values over the defaults.
  CKelServiceTypeZDREST(const SKelServiceAttributeSearchResult& result);
  ~CKelServiceTypeZDREST() override;

  std::string GetTypeString() const override;

  std::string GetAttrServerName() const;
  void SetAttrServerName(const std::string& name);
  std::string GetAttrServerNSName() const;
  void SetAttrServerNSName(const std::string& name);
  unsigned short GetAttrServerNSPort() const;
  void SetAttrServerNSPort(const unsigned short& port);
  /// The addresses trimmed, in upper case and sorted.
  std::vector<std::string> GetAttrServerNSIpAddresses() const;
  void SetAttrServerNSIpAddresses(const std::vector<std::string>& addresses);
  std::string GetAttrConfiguredServerName() const;
  void SetAttrConfiguredServerName(const std::string& name);
  std::string GetAttrConfiguredServerNSName() const;
  void SetAttrConfiguredServerNSName(const std::string& name);
  unsigned short GetAttrConfiguredServerNSPort() const;
  void SetAttrConfiguredServerNSPort(const unsigned short& port);
  std::string GetAttrTerminal() const;
  void SetAttrTerminal(const std::string& terminal);
  std::string GetAttrVersionZD() const;
  void SetAttrVersionZD(const std::string& version);
  EZDConnectionStatus GetAttrZDConnectionStatus() const;
  void SetAttrZDConnectionStatus(const EZDConnectionStatus& status);
};

}  // namespace kelsd
