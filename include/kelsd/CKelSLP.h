// Entry to the library: initialisation, and what needs none.
#pragma once

#include <string>

#include "kelsd/Export.h"
#include "kelsd/SKelServiceSearchResult.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Static functions over the state that this process has once. Any thread may call them; none throws.
class KELSD_EXPORT CKelSLP {
 public:
  virtual ~CKelSLP();

  /// Makes searches, registrations and the reading of configurations possible; they fail with
  /// ERR_NOT_INITIALIZED before. (Setting a configuration initialises by itself.) Reads the SLP properties
  /// and applies the client configuration set last. Does nothing, successfully, when already done. Waits for
  /// running searches.
  static SResult Initialize();
  /// Waits for an initialisation or a registration that another thread is at.
  static bool IsInitialized();

  /// Splits a service URL (RFC 2608 section 4.1) such as "service:zdrest.tamro:http://10.0.0.5:8080/api" into
  /// type, host, port, net family and service part. URL and lifetime of `result` stay as they are, and all of
  /// it when the URL is empty (ERR_URL_EMPTY), malformed (ERR_URL_INVALID) or without a host
  /// (ERR_URL_ADDRESS_EMPTY). Works without initialisation and never blocks.
  static SResult ParseServiceURL(SKelServiceSearchResult& result, const std::string& url);
};

}  // namespace kelsd
