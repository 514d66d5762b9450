// When a registration is renewed. Stateless: any thread may call it.
#pragma once

#include <algorithm>
#include <cstdint>

namespace kelsd {

/// Consecutive failures after which a service is given up.
inline constexpr std::uint32_t kMaxReRegistrationFailures = 5;

/// How long before expiry a service is renewed at a given check interval: three intervals, in milliseconds.
constexpr int ReRegistrationMargin(int interval_ms) {
  constexpr int kOverflowsFrom = 715827883;
  constexpr int kLargest = 0x7FFFFFFF;
  return interval_ms < kOverflowsFrom ? interval_ms * 3 : kLargest;
}

/// Whether a service is to be registered again; times in whole seconds since 1970.
///
/// Both clocks are truncated to seconds. A margin below two of them would let a short registration lapse, and
/// a daemon that was started within the very second of the last registration may or may not have seen it. A
/// clock that was set back tells nothing about the age of the registration.
constexpr bool IsRenewalDue(unsigned short lifetime, std::int64_t last_registration, std::int64_t slpd_start,
                            std::int64_t now, int margin_ms) {
  const int margin = std::max(margin_ms / 1000, 2);
  const int threshold = lifetime > margin ? lifetime - margin : 0;
  return now < last_registration || now - last_registration > threshold || last_registration <= slpd_start;
}

}  // namespace kelsd
