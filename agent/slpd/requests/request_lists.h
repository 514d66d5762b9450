// The string lists of requests: scopes against the agent's own, and tags. Pure functions; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace slp {

/// The scopes of `text` that are among `served`, each once; empty: kScopeNotSupported is due (RFC 2608
/// section 11.1).
std::vector<std::string> ServedScopes(std::string_view text, const std::vector<std::string>& served);

/// Most items with asterisks that a tag list may have: each is compared with every attribute of every service
/// that is looked at, while those without are looked up.
inline constexpr std::ptrdiff_t kMaximumWildcardTags = 256;

/// The items of a tag list, empty ones left out. kParseError when one is neither a tag nor a tag with
/// asterisks (RFC 2608 section 9.4), or when more than kMaximumWildcardTags have them.
Result<std::vector<std::string>> ParseTagList(std::string_view text);

}  // namespace slp
