// What the doctor makes of what it has seen. Stateless: any thread may call it.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "kelsd/CKelSLPConfig.h"
#include "kelsd/SKelServiceSearchResult.h"
#include "kelsd/SResult.h"

namespace kelsd_tool {

struct Finding {
  std::string check;
  bool ok = true;
  std::string detail;
  std::string advice;  ///< what to do about it; empty when it is well

  bool operator==(const Finding&) const = default;
};

using Findings = std::vector<Finding>;

/// A failure of the library as a problem, with the hint for its code.
Finding Problem(const std::string& check, const kelsd::SResult& result);

/// Properties that could not be read, and settings that deviate from what the library requires.
Findings JudgeSettings(const std::vector<kelsd::SResult>& unread,
                       const std::map<kelsd::CKelSLPConfig::EProperty, std::string>& deviations);

Finding JudgeRunning(const kelsd::SResult& asked, bool running);

/// How service agents answered a search of the loopback address.
Finding JudgeUnicast(const kelsd::SResult& found, const std::vector<kelsd::SKelServiceSearchResult>& agents);

/// How they answered a search of the whole network, which every host's agent hears; `own_addresses` tell
/// which of them is this host's.
Finding JudgeMulticast(const kelsd::SResult& found, const std::vector<kelsd::SKelServiceSearchResult>& agents,
                       const std::vector<std::string>& own_addresses);

nlohmann::json ToJson(const Findings& findings);
/// Lines for people.
std::vector<std::string> ToLines(const Findings& findings);

}  // namespace kelsd_tool
