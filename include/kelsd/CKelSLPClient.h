// Searching the network for services and their attributes, and the settings of such searches.
#pragma once

#include <string>
#include <vector>

#include "kelsd/CKelSLP.h"
#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/Export.h"
#include "kelsd/IKelServiceType.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"
#include "kelsd/SKelServiceSearchResult.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Static functions over the state that this process has once. Any thread may call them, searches run side by
/// side; none throws. Searches, and reading the configuration, fail with ERR_NOT_INITIALIZED before
/// CKelSLP::Initialize. Outputs are replaced only on success.
class KELSD_EXPORT CKelSLPClient : public CKelSLP {
 public:
  ~CKelSLPClient() override;

  /// Finds the services of the SLP service type `serviceType`, "service:zdrest.tamro:http" for example, and
  /// returns them sorted by URL, each URL once. That nobody answers a multicast is a success without results;
  /// an agent at `address` that doesn't answer is ERR_NETWORK_TIMED_OUT.
  ///
  /// `scopes`: where to search; empty for the configured scopes. `searchFilter`: an LDAPv3 filter over
  /// attributes (RFC 2254); empty for none. `address`: when not empty, only the agent at this IP address (a
  /// host name is ERR_INVALID_PARAMETER) is asked, by unicast, else the directory agents or all agents by
  /// multicast.
  ///
  /// Blocks until the search ends: for the maximum waits of the client configuration, and for up to the
  /// unicast maximum wait more for each directory agent that has fallen silent, which is then left alone for
  /// a minute. Before that it waits for an initialisation, a registration or a renewal that another thread is
  /// at, be it that this starts the daemon; these wait for it, too.
  static SResult FindServices(std::vector<SKelServiceSearchResult>& results, const std::string& serviceType,
                              const std::vector<std::string>& scopes, const std::string& searchFilter,
                              const std::string& address);
  /// The same for type string and scopes of `type`.
  static SResult FindServices(std::vector<SKelServiceSearchResult>& results, const IKelServiceType& type,
                              const std::string& searchFilter, const std::string& address);

  /// Reads the attributes of the service `serviceURL`: the list text of the agent that answers first, and
  /// from it the values of those of `tags` that the library knows and the service carries. Without `tags` the
  /// text holds all attributes and no value is taken from it. `scopes`, `address` and the duration are as in
  /// FindServices.
  static SResult FindAttributes(SKelServiceAttributeSearchResult& result, const std::string& serviceURL,
                                const std::vector<std::string>& tags, const std::vector<std::string>& scopes,
                                const std::string& address);
  /// The same for tags given by their values; ATTR_NONE among them is left out.
  static SResult FindAttributes(SKelServiceAttributeSearchResult& result, const std::string& serviceURL,
                                const std::vector<IKelServiceType::EAttr>& tags,
                                const std::vector<std::string>& scopes, const std::string& address);
  /// The same for service URL, attribute tags and scopes of `type`.
  static SResult FindAttributes(SKelServiceAttributeSearchResult& result, const IKelServiceType& type,
                                const std::string& address);

  /// The settings that SLP currently uses for searches. `errors` is replaced by one entry for each property
  /// that could not be read and each value that the record refused; these hold their defaults, and the call
  /// succeeds all the same.
  static SResult GetSLPClientConfig(CKelSLPClientConfig& config, std::vector<SResult>& errors);
  /// Uses `config` for searches from now on, in this process only, and initialises again to apply it; nothing
  /// is done when it equals the configuration set last (at first the defaults), also when that failed. Waits
  /// for running searches. When it fails the library is no longer initialised, and the next successful
  /// CKelSLP::Initialize applies `config`.
  static SResult SetSLPClientConfig(const CKelSLPClientConfig& config);
};

}  // namespace kelsd
