// One timer's life as its threads share it: who is inside a tick, and whether it has been stopped. Any
// thread.
#pragma once

#include <condition_variable>
#include <mutex>

#include "platform/periodic_timer.h"

namespace kelsd::platform {

class TimerRun {
 public:
  explicit TimerRun(TimerCallbacks callbacks);

  /// A tick and what follows it; nothing after Stop.
  void Tick();

  /// No tick begins after this. Waits for running ticks, but not from within a thread that is inside Tick.
  void Stop();

 private:
  const TimerCallbacks callbacks_;
  std::mutex mutex_;
  std::condition_variable ticks_ended_;
  int running_ticks_ = 0;
  bool stopped_ = false;
};

}  // namespace kelsd::platform
