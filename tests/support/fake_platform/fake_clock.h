// A clock that stands still until a test, or a wait, moves it.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/clock.h"

namespace kelsd {

/// Any thread may call it.
class FakeClock : public platform::Clock {
 public:
  static constexpr std::int64_t kStart = 1'000'000;

  std::int64_t Now() override {
    const std::lock_guard lock(mutex_);
    return kStart + milliseconds_ / 1000;
  }
  /// Begins shortly before it wraps round.
  std::uint32_t TickCount() override {
    const std::lock_guard lock(mutex_);
    return static_cast<std::uint32_t>(milliseconds_) - 1500U;
  }
  /// Takes no time of the test's.
  void Sleep(std::uint32_t milliseconds) override {
    std::function<void()> hook;
    {
      const std::lock_guard lock(mutex_);
      milliseconds_ += milliseconds;
      sleeps_.push_back(milliseconds);
      hook = on_sleep_;
    }
    if (hook) {
      hook();
    }
  }

  void AdvanceSeconds(std::int64_t seconds) {
    const std::lock_guard lock(mutex_);
    milliseconds_ += seconds * 1000;
  }
  /// Every wait so far, in milliseconds.
  std::vector<std::uint32_t> Sleeps() {
    const std::lock_guard lock(mutex_);
    return sleeps_;
  }
  /// Runs at the end of every wait.
  void OnSleep(std::function<void()> hook) {
    const std::lock_guard lock(mutex_);
    on_sleep_ = std::move(hook);
  }

 private:
  std::mutex mutex_;
  std::int64_t milliseconds_ = 0;
  std::vector<std::uint32_t> sleeps_;
  std::function<void()> on_sleep_;
};

}  // namespace kelsd
