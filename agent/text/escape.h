// Escaping of reserved characters in attribute tags and values (RFC 2608 section 5). Pure functions; any
// thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"

namespace slp {

/// Writes `(),\!<=>~` and control characters as a backslash and two upper-case hexadecimal digits; everything
/// else, bytes from 0x80 on included, is kept.
std::string Escape(std::string_view text);

/// The inverse; hexadecimal digits in either case. kParseError for a backslash that two digits do not follow.
/// An opaque value comes back as it is (RFC 2614 section 4.6.5).
Result<std::string> Unescape(std::string_view text);

/// As Unescape, with the rule of RFC 2608 section 5 that only reserved characters and those of `others` may
/// stand escaped: kParseError for another one, so for an opaque value too.
Result<std::string> UnescapeReserved(std::string_view text, std::string_view others = {});

/// The bytes of an opaque value: `\FF` followed by nothing but escaped bytes, at least one. None for another
/// text.
std::optional<std::vector<unsigned char>> DecodeOpaque(std::string_view text);

}  // namespace slp
