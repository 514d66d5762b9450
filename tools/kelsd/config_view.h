// The settings of a configuration record as rows, for tables and JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/CKelSLPServiceConfig.h"
#include "table.h"

namespace kelsd_tool {

struct Setting {
  kelsd::CKelSLPConfig::EProperty property;
  nlohmann::json value;
  bool is_standard = true;  ///< holds the default of the SLP standard
  bool has_standard = true;
};

/// In the order in which the library reads them.
std::vector<Setting> ClientSettings(const kelsd::CKelSLPClientConfig& config);
std::vector<Setting> ServiceSettings(const kelsd::CKelSLPServiceConfig& config);

/// What `kelsd config show` prints of them; the table marks what differs from the SLP standard.
nlohmann::json ToJson(const Setting& setting);
nlohmann::json ToJson(const std::vector<Setting>& settings);
Table ToTable(const std::vector<Setting>& settings);

}  // namespace kelsd_tool
