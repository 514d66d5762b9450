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

class QueueTimer : public PeriodicTimer {
 public:
  QueueTimer(HANDLE queue, std::uintptr_t number, std::shared_ptr<TimerRun> run)
      : queue_(queue), number_(number), run_(std::move(run)) {}

  // The queue's own waiting would wait for what follows a tick, too.
  ~QueueTimer() override {
    DeleteTimerQueueEx(queue_, nullptr);
    RunningTimers::Instance().Remove(number_);
    run_->Stop();
  }

 private:
  const HANDLE queue_;
  const std::uintptr_t number_;
  const std::shared_ptr<TimerRun> run_;
};

class QueueTimers : public TimerFactory {
 public:
  std::unique_ptr<PeriodicTimer> Start(std::uint32_t period_ms, TimerCallbacks callbacks) override {
    KeepModuleLoaded();
    const HANDLE queue = CreateTimerQueue();
    if (queue == nullptr) {
      return nullptr;
    }
    auto run = std::make_shared<TimerRun>(std::move(callbacks));
    const std::uintptr_t number = RunningTimers::Instance().Add(run);
    HANDLE timer = nullptr;
    if (CreateTimerQueueTimer(&timer, queue, TimerCallback, reinterpret_cast<void*>(number), period_ms,
                              period_ms, 0) == 0) {
      RunningTimers::Instance().Remove(number);
      DeleteTimerQueueEx(queue, nullptr);
      return nullptr;
    }
    return std::make_unique<QueueTimer>(queue, number, std::move(run));
  }
};

}  // namespace

TimerFactory& SystemTimers() {
  static TimerFactory& timers = *new QueueTimers;
  return timers;
}

}  // namespace kelsd::platform
