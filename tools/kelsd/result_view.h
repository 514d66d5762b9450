// A result of the library for programs.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "kelsd/SResult.h"

namespace kelsd_tool {

/// Code, message, detail, debug trail, and what to do about it ("hint", empty when there is nothing to
/// advise).
nlohmann::json ToJson(const kelsd::SResult& result);
nlohmann::json ToJson(const std::vector<kelsd::SResult>& results);

}  // namespace kelsd_tool
