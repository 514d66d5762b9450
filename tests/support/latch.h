// A latch for threads of tests. Any thread. It stands in for the standard one, whose waiters sleep on after
// the last count where GCC has no futex to build it on, which is so on Windows.
#pragma once

#include <condition_variable>
#include <mutex>

namespace kelsd::support {

class Latch {
 public:
  explicit Latch(int count) : count_(count) {}
  Latch(const Latch&) = delete;
  Latch& operator=(const Latch&) = delete;

  void CountDown() {
    // Within the lock: a waiter may destroy the latch as soon as it goes on.
    const std::lock_guard guard(mutex_);
    --count_;
    changed_.notify_all();
  }

  /// Returns when the count has come down to zero.
  void Wait() {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return count_ <= 0; });
  }

  void ArriveAndWait() {
    CountDown();
    Wait();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int count_;  // guarded by mutex_
};

}  // namespace kelsd::support
