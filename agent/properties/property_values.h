// Property values as numbers and flags. Pure functions; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "properties/catalogue.h"

namespace slp {

/// "true", "yes", "1" and "false", "no", "0", in either case (RFC 2614 section 2.1 and its users' habits).
std::optional<bool> ToBool(std::string_view text);

/// The whole text as a decimal number from `least` to `most`.
std::optional<int> ToInt(std::string_view text, int least, int most);

/// Comma-separated numbers from `least` to `most`, empty elements left out. A 0 ends the list; what stands
/// behind is ignored. None when there is anything else, or no number at all.
std::optional<std::vector<int>> ToIntList(std::string_view text, int least, int most);

/// Whether a text may be a property's key: printable ASCII without blanks (RFC 2614 section 2.1).
bool IsPropertyKey(std::string_view text);

/// Those elements of a list that are addresses of either version or names of hosts.
std::string UsableHosts(std::string_view text);

/// Whether the property may have this value.
bool IsAllowed(const PropertyInfo& property, std::string_view value);

}  // namespace slp
