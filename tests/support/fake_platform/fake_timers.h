// Timers whose ticks a test gives, on threads of the test's choice.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#include "platform/periodic_timer.h"
#include "platform/timer_run.h"

namespace kelsd {

/// Any thread may call it.
class FakeTimers : public platform::TimerFactory {
 public:
  std::unique_ptr<platform::PeriodicTimer> Start(std::uint32_t period_ms,
                                                 platform::TimerCallbacks callbacks) override {
    const std::lock_guard lock(mutex_);
    periods_.push_back(period_ms);
    if (out_of_memory_) {
      throw std::bad_alloc();
    }
    if (fails_) {
      return nullptr;
    }
    auto run = std::make_shared<platform::TimerRun>(std::move(callbacks));
    live_.push_back(run);
    return std::make_unique<Timer>(*this, run);
  }

  /// One tick of every timer that lives, on the caller's thread.
  void Tick() {
    std::vector<std::shared_ptr<platform::TimerRun>> live;
    {
      const std::lock_guard lock(mutex_);
      live = live_;
    }
    for (const auto& run : live) {
      run->Tick();
    }
  }

  /// From now on no timer can be had, or can be again.
  void SetFails(bool fails) {
    const std::lock_guard lock(mutex_);
    fails_ = fails;
  }
  /// From now on there is no memory for a timer, or is again.
  void SetOutOfMemory(bool out_of_memory) {
    const std::lock_guard lock(mutex_);
    out_of_memory_ = out_of_memory;
  }
  std::size_t Live() {
    const std::lock_guard lock(mutex_);
    return live_.size();
  }
  /// The periods of all timers that were asked for, those that could not be had included.
  std::vector<std::uint32_t> Periods() {
    const std::lock_guard lock(mutex_);
    return periods_;
  }

 private:
  class Timer : public platform::PeriodicTimer {
   public:
    Timer(FakeTimers& timers, std::shared_ptr<platform::TimerRun> run)
        : timers_(timers), run_(std::move(run)) {}
    ~Timer() override {
      {
        const std::lock_guard lock(timers_.mutex_);
        timers_.live_.erase(std::find(timers_.live_.begin(), timers_.live_.end(), run_));
      }
      run_->Stop();
    }

   private:
    FakeTimers& timers_;
    const std::shared_ptr<platform::TimerRun> run_;
  };

  std::mutex mutex_;
  std::vector<std::uint32_t> periods_;
  std::vector<std::shared_ptr<platform::TimerRun>> live_;
  bool fails_ = false;
  bool out_of_memory_ = false;
};

}  // namespace kelsd
