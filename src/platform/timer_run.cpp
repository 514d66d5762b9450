#include "platform/timer_run.h"

#include <utility>

namespace kelsd::platform {
namespace {

// How many ticks, or what follows them, the current thread is inside of.
thread_local int inside_timer = 0;

}  // namespace

TimerRun::TimerRun(TimerCallbacks callbacks) : callbacks_(std::move(callbacks)) {}

void TimerRun::Tick() {
  {
    const std::lock_guard guard(mutex_);
    if (stopped_) {
      return;
    }
    ++running_ticks_;
  }
  ++inside_timer;
  callbacks_.tick();
  {
    const std::lock_guard guard(mutex_);
    --running_ticks_;
    ticks_ended_.notify_all();
  }
  callbacks_.after_tick();
  --inside_timer;
}

void TimerRun::Stop() {
  std::unique_lock guard(mutex_);
  stopped_ = true;
  if (inside_timer == 0) {
    ticks_ended_.wait(guard, [this] { return running_ticks_ == 0; });
  }
}

}  // namespace kelsd::platform
