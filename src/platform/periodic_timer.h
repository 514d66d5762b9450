// A timer that calls back again and again on threads of its own, never on the caller's. Handed in, so that
// tests drive the ticks themselves.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace kelsd::platform {

/// A running timer; deleting it ends the ticks. Any thread may delete it, once.
///
/// Deleting waits until no tick is running and none will begin. It never waits for what follows a tick, and
/// waits for nothing at all when it is called from a tick or from what follows one. A thread that deletes the
/// timer may hold locks that a tick only tries to take.
class PeriodicTimer {
 public:
  PeriodicTimer() = default;
  PeriodicTimer(const PeriodicTimer&) = delete;
  PeriodicTimer& operator=(const PeriodicTimer&) = delete;
  virtual ~PeriodicTimer() = default;
};

/// What a timer calls. Neither may throw. A tick begins also while an earlier one, or what follows it, has
/// not returned.
struct TimerCallbacks {
  std::function<void()> tick;
  std::function<void()> after_tick;  ///< on the same thread, right after the tick
};

class TimerFactory {
 public:
  TimerFactory() = default;
  TimerFactory(const TimerFactory&) = delete;
  TimerFactory& operator=(const TimerFactory&) = delete;
  virtual ~TimerFactory() = default;

  /// First tick after one period, `period_ms` at least 1. Null when the system has no timer to give.
  virtual std::unique_ptr<PeriodicTimer> Start(std::uint32_t period_ms, TimerCallbacks callbacks) = 0;
};

/// The system's timers; never destroyed.
TimerFactory& SystemTimers();

}  // namespace kelsd::platform
