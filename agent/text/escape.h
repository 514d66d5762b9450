// Escaping of reserved characters in attribute tags and values (RFC 2608 section 5). Pure functions; any thread.
#pragma once

#include <string>
#include <string_view>

#include "base/error.h"

namespace slp {

/// Writes `(),\!<=>~` and control characters as a backslash and two upper-case hexadecimal digits; everything else,
/// bytes from 0x80 on included, is kept.
std::string Escape(std::string_view text);

/// The inverse; hexadecimal digits in either case. kParseError for a backslash that two digits do not follow.
Result<std::string> Unescape(std::string_view text);

/// Whether `tag` may be an attribute tag: not empty and without `(),\!<=>~_*`, control characters and blanks inside.
bool IsValidTag(std::string_view tag);

}  // namespace slp
