// The attributes of one service for people and for programs: typed where the family knows the type, else as
// the service wrote them.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "kelsd/CKelServiceTypeTamroBase.h"
#include "kelsd/SKelServiceAttributeSearchResult.h"

namespace kelsd_tool {

/// Tag and JSON value of each attribute in `service`, in the order of the tags' numbers: addresses as arrays,
/// ports as numbers, flags as booleans, everything else as text.
std::vector<std::pair<std::string, nlohmann::json>> TypedAttributes(
    const kelsd::CKelServiceTypeTamroBase& service, const std::vector<kelsd::IKelServiceType::EAttr>& tags);

/// The elements of a raw attribute list, "(tag=value)" or a keyword each; values stay escaped.
std::vector<std::pair<std::string, std::string>> RawAttributes(const std::string& attribute_list);

/// A typed value as text for a table.
std::string ToText(const nlohmann::json& value);

}  // namespace kelsd_tool
