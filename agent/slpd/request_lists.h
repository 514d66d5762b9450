// The string lists of requests: scopes against the agent's own, and tags. Pure functions; any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace slp {

/// The scopes of `text` that are among `served`, each once; empty: kScopeNotSupported is due (RFC 2608
/// section 11.1).
std::vector<std::string> ServedScopes(std::string_view text, const std::vector<std::string>& served);

/// The items of a tag list, empty ones left out. kParseError when one is neither a tag nor a tag with
/// asterisks (RFC 2608 section 9.4).
Result<std::vector<std::string>> ParseTagList(std::string_view text);

}  // namespace slp
