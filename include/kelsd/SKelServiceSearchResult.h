// One service that a search found, or the pieces of one service URL.
#pragma once

#include <string>

#include "kelsd/Export.h"

namespace kelsd {

/// A plain value: copyable, owned by the caller, used by one thread at a time. Equal and ordered by the URL
/// alone, so that results can be sorted and repeats found whatever else differs.
struct KELSD_EXPORT SKelServiceSearchResult {
 public:
  /// Copies each argument into the member of the same meaning. The order is not that of the URL: the
  /// lifetime comes second, and the net family before the service part.
  SKelServiceSearchResult(const std::string& url = "", unsigned short lifetime = 0,
                          const std::string& typeString = "", const std::string& host = "",
                          unsigned int port = 0, const std::string& netFamily = "",
                          const std::string& servicePart = "");

  bool operator==(const SKelServiceSearchResult& other) const;
  bool operator!=(const SKelServiceSearchResult& other) const;
  bool operator<(const SKelServiceSearchResult& other) const;

  /// Seven lines, one a member, each ended by a newline.
  std::string ToString();

  /// The complete service URL, "service:zdrest.tamro:http://10.0.0.5:8080" for example.
  std::string URL;
  /// The lifetime of the registration in seconds, as SLP reported it.
  unsigned short Lifetime;
  /// The service type part of the URL (in a found service whose URL cannot be split it is empty, as all parts
  /// below are), "service:zdrest.tamro:http" for example.
  std::string TypeString;
  /// Without the brackets of an IPv6 address.
  std::string Host;
  /// 0 when the URL has none.
  unsigned int Port;
  /// Empty for host names and IPv4 addresses, "v6" for an IPv6 address, "ipx", "at".
  std::string NetFamily;
  /// What follows host and port in the URL, possibly nothing.
  std::string ServicePart;
};

}  // namespace kelsd
