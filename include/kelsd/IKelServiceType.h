// What a service of the product family is to the library: a service type string, an address, scopes, a
// lifetime and attributes with fixed tags.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "kelsd/Export.h"

namespace kelsd {

/// One service that can be searched for or registered. Objects are used by one thread at a time; the static
/// functions may be called from any thread.
class KELSD_EXPORT IKelServiceType {
 public:
  /// The attribute tags, in the order in which attributes are listed; they are registered in the order of
  /// their texts. The numbers are part of the interface.
  enum EAttr : int {
    ATTR_NONE = 0,
    ATTR_VERSION = 1,
    ATTR_IP_ADDRESSES = 2,
    ATTR_OPERATION = 3,
    ATTR_SERVER_MODE = 4,
    ATTR_SERVER_ZD_STATUS = 5,
    ATTR_SERVER_NS_STATUS = 6,
    ATTR_SERVER_NS_NAME = 7,
    ATTR_SERVER_NS_PORT = 8,
    ATTR_SERVER_NAME = 9,
    ATTR_SERVER_NETWORKADAPTER = 10,
    ATTR_SERVER_CLUSTER_STATUS = 11,
    ATTR_PARTNER_TERMINAL = 12,
    ATTR_PARTNER_SERVER_NAME = 13,
    ATTR_PARTNER_NS_NAME = 14,
    ATTR_VERSION_ZD = 15,
    ATTR_SERVER_MODE_LAST_STARTED = 16,
    ATTR_SERVICEDISCOVERY_IS_DA = 17,
    ATTR_SERVICEDISCOVERY_DA_ADDRESSES = 18,
    ATTR_SERVER_TERMINAL = 19,
    ATTR_SERVER_CONNECTION_STATUS = 20,
    ATTR_CONFIGURED_SERVER_NS_NAME = 21,
    ATTR_CONFIGURED_SERVER_NS_PORT = 22,
    ATTR_CONFIGURED_SERVER_NAME = 23,
    ATTR_SERVER_NS_IPS = 24,
    ATTR_SERVICEHOST_SDK_VERSION = 25,
    ATTR_SERVICEHOST_PRODUCT_NAME = 26,
    ATTR_SERVICEHOST_MODE = 27,
    ATTR_SERVICEHOST_PLUGIN_NAME = 28,
    ATTR_SERVICEHOST_INSTANCE_NAME = 29,
  };

  IKelServiceType();
  virtual ~IKelServiceType();

  /// The SLP service type, "service:zdrest.tamro:http" for example.
  virtual std::string GetTypeString() const = 0;
  /// The address part of the service URL: "host:port" or "host".
  virtual std::string GetAddress() const = 0;
  virtual void SetAddress(const std::string& address) = 0;
  /// The service URL under which the service is registered.
  virtual std::string GetServiceURL() const = 0;
  /// All attributes of this type with their current values.
  virtual std::map<EAttr, std::string> GetAttributes() const = 0;
  /// The tags that this type carries, ascending.
  virtual std::vector<EAttr> GetAttributeTags() const = 0;
  /// Sets the value of `tag`; false, and nothing changed, when the type does not carry it.
  virtual bool SetAttributeValue(const EAttr& tag, const std::string& value) = 0;
  /// The value of `tag`, empty when the type does not carry it.
  virtual std::string GetAttributeValue(const EAttr& tag) const = 0;
  virtual bool HasAttribute(const EAttr& tag) const = 0;
  /// The scopes in which the service is registered.
  virtual std::vector<std::string> GetScopes() const = 0;
  /// The lifetime of a registration in seconds.
  virtual unsigned short GetLifetime() const = 0;
  virtual void SetLifetime(const unsigned short& lifetime) = 0;

  /// The tag with the text `text`, compared exactly; the empty text is the tag ATTR_NONE. For any other text
  /// the result is ATTR_NONE too and `*unknown` becomes true, unless `unknown` is null. The flag is never set
  /// to false: the caller does that beforehand.
  static EAttr StringToEAttr(const std::string& text, bool* unknown);
  /// The text of `tag` as it goes on the wire, "x-version" for example; empty for ATTR_NONE and for any value
  /// that is no tag.
  static std::string ToString(const EAttr& tag);

  // Search filters (LDAPv3, RFC 2254) over the attributes of a service. Values are inserted exactly as given:
  // who needs filter characters escaped does it before the call.

  /// Services that have the IP address `ip`.
  static std::string GetIpAddressesSearchFilter(const std::string& ip);
  /// Services that have any of the IP addresses `ips`, and the server name `serverName`. With an empty
  /// list only the server name counts.
  static std::string GetIpsServerNameSearchFilter(std::vector<std::string> ips,
                                                  const std::string& serverName);
  /// Services that have the IP address `ip` and the server name `serverName`.
  static std::string GetNSIpServerNameSearchFilter(const std::string& ip, const std::string& serverName);
  /// Services that are attached to any of the naming services named `nsNames`, with the server name
  /// `serverName`. With an empty list only the server name counts.
  static std::string GetNSIpsServerNameSearchFilter(std::vector<std::string> nsNames,
                                                    const std::string& serverName);
  /// Services that are attached to the naming service named `nsName`.
  static std::string GetNamingServiceSearchFilter(const std::string& nsName);
  /// Services that are attached to the naming service named `nsName`, with the server name `serverName`.
  static std::string GetNsNameServerNameSearchFilter(const std::string& nsName,
                                                     const std::string& serverName);
};

}  // namespace kelsd
