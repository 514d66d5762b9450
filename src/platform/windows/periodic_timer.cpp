// Timers on the system's timer queues, one queue a timer.
#include "platform/periodic_timer.h"

#include <windows.h>

#include <map>
#include <mutex>
#include <utility>

#include "platform/timer_run.h"

namespace kelsd::platform {
namespace {

// Timers by the number that their callbacks carry. A callback that the pool runs late, after its timer has
// gone, finds nothing here and returns; a pointer in its place would dangle.
class RunningTimers {
 public:
  static RunningTimers& Instance() {
    static RunningTimers& instance = *new RunningTimers;
    return instance;
  }

  std::uintptr_t Add(std::shared_ptr<TimerRun> run) {
    const std::lock_guard guard(mutex_);
    runs_.emplace(++last_, std::move(run));
    return last_;
  }

  std::shared_ptr<TimerRun> Find(std::uintptr_t number) {
    const std::lock_guard guard(mutex_);
    const auto run = runs_.find(number);
    return run == runs_.end() ? nullptr : run->second;
  }

  void Remove(std::uintptr_t number) {
    const std::lock_guard guard(mutex_);
    runs_.erase(number);
  }

 private:
  std::mutex mutex_;
  std::map<std::uintptr_t, std::shared_ptr<TimerRun>> runs_;
  std::uintptr_t last_ = 0;
};

void CALLBACK TimerCallback(void* number, BOOLEAN) {
  if (const auto run = RunningTimers::Instance().Find(reinterpret_cast<std::uintptr_t>(number))) {
    run->Tick();
  }
}

// A timer's callback is code of this module: it stays loaded from the first timer on.
void KeepModuleLoaded() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<const char*>(&TimerCallback), &module);
}

// Everything that needs memory is there before the system is asked for anything.
class QueueTimer : public PeriodicTimer {
 public:
  explicit QueueTimer(TimerCallbacks callbacks)
      : run_(std::make_shared<TimerRun>(std::move(callbacks))),
        number_(RunningTimers::Instance().Add(run_)) {}

  // The queue's own waiting would wait for what follows a tick, too.
  ~QueueTimer() override {
    if (queue_ != nullptr) {
      DeleteTimerQueueEx(queue_, nullptr);
    }
    RunningTimers::Instance().Remove(number_);
    run_->Stop();
  }

  // Whether the system had a timer to give.
  bool Begin(std::uint32_t period_ms) {
    queue_ = CreateTimerQueue();
    HANDLE timer = nullptr;
    return queue_ != nullptr &&
           CreateTimerQueueTimer(&timer, queue_, TimerCallback, reinterpret_cast<void*>(number_), period_ms,
                                 period_ms, 0) != 0;
  }

 private:
  const std::shared_ptr<TimerRun> run_;
  const std::uintptr_t number_;
  HANDLE queue_ = nullptr;
};

class QueueTimers : public TimerFactory {
 public:
  std::unique_ptr<PeriodicTimer> Start(std::uint32_t period_ms, TimerCallbacks callbacks) override {
    KeepModuleLoaded();
    auto timer = std::make_unique<QueueTimer>(std::move(callbacks));
    return timer->Begin(period_ms) ? std::move(timer) : nullptr;
  }
};

}  // namespace

TimerFactory& SystemTimers() {
  static TimerFactory& timers = *new QueueTimers;
  return timers;
}

}  // namespace kelsd::platform
