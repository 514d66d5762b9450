// Time as the service agent needs it: the time of day, a running count of milliseconds, and waiting. Handed
// in, so that a wait of minutes takes no time in a test.
#pragma once

#include <cstdint>

namespace kelsd::platform {

/// Any thread may call it.
class Clock {
 public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;

  /// Whole seconds since 1970-01-01 UTC.
  virtual std::int64_t Now() = 0;
  /// Milliseconds since some moment; wraps round after 2^32 of them.
  virtual std::uint32_t TickCount() = 0;
  virtual void Sleep(std::uint32_t milliseconds) = 0;
};

/// The system's clock; never destroyed.
Clock& SystemClock();

}  // namespace kelsd::platform
