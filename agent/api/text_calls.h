// The parsing and escaping functions of the C API (RFC 2614 sections 4.6.3 to 4.6.5). What they hand out is
// null unless they return SLP_OK, and released with SLPFree. None throws; any thread.
#pragma once

#include "slp.h"

namespace slp::client {

SLPError ParseUrlCall(const char* text, SLPSrvURL** url) noexcept;
SLPError ParseAttributeCall(const char* list, const char* tag, char** value) noexcept;

/// `is_tag` refuses what no tag may hold even in escaped form: `*`, `_`, TAB, CR and LF (RFC 2608 section 5).
SLPError EscapeCall(const char* text, char** escaped, bool is_tag) noexcept;

/// An opaque value, `\FF` and nothing but escaped bytes, is handed out as it is. SLP_PARSE_ERROR also for
/// `\00`, which no C string can hold.
SLPError UnescapeCall(const char* text, char** unescaped, bool is_tag) noexcept;

}  // namespace slp::client
