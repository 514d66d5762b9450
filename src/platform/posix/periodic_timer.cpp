// Timers on threads of the library. Of a timer's threads one at a time waits for the next tick; before it
// goes into the tick it makes sure that another one waits in its place, so that ticks go on while an earlier
// one is busy.
#include "platform/periodic_timer.h"

#include <dlfcn.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/timer_run.h"

namespace kelsd::platform {
namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

// Threads that one timer may have busy at a time; with so many stuck, ticks are left out.
constexpr int kMaximumThreads = 8;

// Keeps the application's signals from the threads that are started meanwhile.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previous_);
  }
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;

 private:
  sigset_t previous_{};
};

class ThreadGroup : public std::enable_shared_from_this<ThreadGroup> {
 public:
  ThreadGroup(std::uint32_t period_ms, TimerCallbacks callbacks)
      : period_(period_ms), run_(std::move(callbacks)), next_(std::chrono::steady_clock::now() + period_) {}

  // Whether there is a thread to wait for the first tick.
  bool Begin() {
    const std::lock_guard guard(mutex_);
    return AddThread();
  }

  void Stop() {
    {
      const std::lock_guard guard(mutex_);
      stopped_ = true;
    }
    wake_.notify_all();
    run_.Stop();
  }

 private:
  // Whether there is one more; the system may have no thread, or no memory, to give. The caller holds mutex_.
  bool AddThread() {
    const BlockedSignals blocked;
    try {
      std::thread([self = shared_from_this()] { self->Work(); }).detach();
    } catch (const std::exception&) {
      return false;
    }
    ++idle_;
    ++threads_;
    return true;
  }

  // 1. Wait for the turn to be the one that waits for the tick, then for the tick.
  // 2. Set the time of the next one; ticks that were missed meanwhile are not made up for.
  // 3. Make sure that somebody else waits, then run the tick.
  void Work() {
    std::unique_lock guard(mutex_);
    while (!stopped_) {
      if (waiting_ || std::chrono::steady_clock::now() < next_) {
        WaitForTurn(guard);
        continue;
      }
      const auto now = std::chrono::steady_clock::now();
      next_ += period_;
      if (next_ <= now) {
        next_ = now + period_;
      }
      --idle_;
      if (idle_ == 0 && threads_ < kMaximumThreads) {
        AddThread();
      }
      wake_.notify_one();
      guard.unlock();
      run_.Tick();
      guard.lock();
      ++idle_;
    }
    --idle_;
    --threads_;
  }

  void WaitForTurn(std::unique_lock<std::mutex>& guard) {
    if (waiting_) {
      wake_.wait(guard, [this] { return stopped_ || !waiting_; });
      return;
    }
    waiting_ = true;
    wake_.wait_until(guard, next_, [this] { return stopped_; });
    waiting_ = false;
  }

  const std::chrono::milliseconds period_;
  TimerRun run_;
  std::mutex mutex_;
  std::condition_variable wake_;
  SteadyTime next_;
  bool waiting_ = false;  // a thread waits for the next tick
  bool stopped_ = false;
  int idle_ = 0;
  int threads_ = 0;
};

// The threads run code of this library: it stays loaded from the first timer on.
void KeepLibraryLoaded() {
  static const int anchor = 0;
  Dl_info info{};
  if (dladdr(&anchor, &info) != 0 && info.dli_fname != nullptr) {
    dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
  }
}

// Everything that needs memory is there before the first thread, which nothing could stop otherwise.
class ThreadTimer : public PeriodicTimer {
 public:
  ThreadTimer(std::uint32_t period_ms, TimerCallbacks callbacks)
      : group_(std::make_shared<ThreadGroup>(period_ms, std::move(callbacks))) {}
  ~ThreadTimer() override { group_->Stop(); }

  // Whether the system had a thread to give.
  bool Begin() { return group_->Begin(); }

 private:
  const std::shared_ptr<ThreadGroup> group_;
};

class ThreadTimers : public TimerFactory {
 public:
  std::unique_ptr<PeriodicTimer> Start(std::uint32_t period_ms, TimerCallbacks callbacks) override {
    KeepLibraryLoaded();
    auto timer = std::make_unique<ThreadTimer>(period_ms, std::move(callbacks));
    return timer->Begin() ? std::move(timer) : nullptr;
  }
};

}  // namespace

TimerFactory& SystemTimers() {
  static TimerFactory& timers = *new ThreadTimers;
  return timers;
}

}  // namespace kelsd::platform
