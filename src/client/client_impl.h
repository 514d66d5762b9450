// Service and attribute searches behind the facade CKelSLPClient. Any thread may call it; searches run side
// by side.
#pragma once

#include <string>
#include <vector>

#include "kelsd/IKelServiceType.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"
#include "kelsd/SKelServiceSearchResult.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// Each search holds the core lock shared from beginning to end and uses a handle of its own. Nothing throws;
/// outputs are replaced only on success. The arguments are those of CKelSLPClient.
class CKelSLPClientImpl {
 public:
  [[nodiscard]] static SResult FindServices(std::vector<SKelServiceSearchResult>& results,
                                            const std::string& serviceType,
                                            const std::vector<std::string>& scopes,
                                            const std::string& searchFilter, const std::string& address);
  [[nodiscard]] static SResult FindServices(std::vector<SKelServiceSearchResult>& results,
                                            const IKelServiceType& type, const std::string& searchFilter,
                                            const std::string& address);

  [[nodiscard]] static SResult FindAttributes(SKelServiceAttributeSearchResult& result,
                                              const std::string& serviceURL,
                                              const std::vector<std::string>& tags,
                                              const std::vector<std::string>& scopes,
                                              const std::string& address);
  [[nodiscard]] static SResult FindAttributes(SKelServiceAttributeSearchResult& result,
                                              const std::string& serviceURL,
                                              const std::vector<IKelServiceType::EAttr>& tags,
                                              const std::vector<std::string>& scopes,
                                              const std::string& address);
  [[nodiscard]] static SResult FindAttributes(SKelServiceAttributeSearchResult& result,
                                              const IKelServiceType& type, const std::string& address);
};

}  // namespace kelsd
