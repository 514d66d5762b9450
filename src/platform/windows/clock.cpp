#include "platform/clock.h"

#include <windows.h>

namespace kelsd::platform {
namespace {

// Ticks of 100 ns between 1601, where the system's file times begin, and 1970.
constexpr std::uint64_t kTicksBefore1970 = 116444736000000000ULL;
constexpr std::uint64_t kTicksPerSecond = 10000000ULL;

class WindowsClock : public Clock {
 public:
  std::int64_t Now() override {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    const std::uint64_t ticks = (static_cast<std::uint64_t>(time.dwHighDateTime) << 32U) | time.dwLowDateTime;
    return static_cast<std::int64_t>((ticks - kTicksBefore1970) / kTicksPerSecond);
  }

  std::uint32_t TickCount() override { return GetTickCount(); }

  void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }
};

}  // namespace

Clock& SystemClock() {
  static Clock& clock = *new WindowsClock;
  return clock;
}

}  // namespace kelsd::platform
