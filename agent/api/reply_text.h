// What a reply's texts must be like before a caller sees them as C strings. Pure functions; any thread.
#pragma once

#include <string_view>

namespace slp::client {

/// Not empty, and without blanks and control characters, which no URL has (RFC 2609 section 2.1).
bool IsSaneUrl(std::string_view url);

/// Without NUL, at which a caller would see it end.
bool IsWholeText(std::string_view text);

}  // namespace slp::client
