// Language tags (RFC 1766 as RFC 2608 section 6.1 uses it): compared without regard to case, "en" also serves
// a request for "en-GB". Pure functions; any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace slp {

/// Far more than any language in use needs (RFC 1766 sets no bound): tags are kept with registrations, and a
/// peer must not fill the memory with them.
inline constexpr std::size_t kLongestLanguageTag = 64;

/// Letters, digits and hyphens, 1 to 8 letters and digits between hyphens, kLongestLanguageTag at most.
bool IsValidLanguageTag(std::string_view tag);

/// Whether a registration in `registered` serves a request in `requested`: dialects, behind the first hyphen,
/// do not count (RFC 2608 section 8.1).
bool LanguageServes(std::string_view registered, std::string_view requested);

}  // namespace slp
