// Typed values of an open configuration file. One thread a store.
#pragma once

#include <string>
#include <vector>

#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/SResult.h"
#include "service/conf_access.h"

namespace kelsd {

// Each leaves `value` alone when the file doesn't have the key. Numbers and timeouts that cannot be parsed
// are ERR_PROPERTY_PARSE and leave it alone, too.

[[nodiscard]] SResult ReadNumericProperty(int& value, CKelSLPConfig::EProperty property,
                                          const CSLPConfAccess& store);
[[nodiscard]] SResult ReadTimeoutList(std::vector<int>& value, CKelSLPConfig::EProperty property,
                                      const CSLPConfAccess& store);
[[nodiscard]] SResult ReadStringProperty(std::string& value, CKelSLPConfig::EProperty property,
                                         const CSLPConfAccess& store);
[[nodiscard]] SResult ReadBoolProperty(bool& value, CKelSLPConfig::EProperty property,
                                       const CSLPConfAccess& store);
[[nodiscard]] SResult ReadStringListProperty(std::vector<std::string>& value,
                                             CKelSLPConfig::EProperty property, const CSLPConfAccess& store);

/// Sets the twenty keys that the service agent owns, in the order in which they are appended to an empty
/// file.
void SetServiceConfigValues(CSLPConfAccess& store, const CKelSLPServiceConfig& config);

}  // namespace kelsd
