// From the text of a search predicate to its tree (RFC 2254 section 4). Pure functions; any thread.
#pragma once

#include <string_view>

#include "base/error.h"
#include "text/predicate.h"

namespace slp {

/// One filter with its brackets. kParseError for anything else, also the empty text.
Result<PredicateNode> ParseFilter(std::string_view text);

}  // namespace slp
