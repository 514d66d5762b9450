// What a busy machine adds to the times that a test measures. One thread makes it and asks it.
#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

namespace kelsd::support {

/// How much later than asked for a thread goes on that only ever sleeps: what a busy machine takes from every
/// thread, and nothing that the library or the daemon does.
class MachineDelay {
 public:
  MachineDelay() : thread_([this] { Sleep(); }) {}
  ~MachineDelay() {
    {
      const std::lock_guard guard(mutex_);
      ended_ = true;
    }
    thread_.join();
  }
  MachineDelay(const MachineDelay&) = delete;
  MachineDelay& operator=(const MachineDelay&) = delete;

  /// The sum of all delays so far. After a standstill of the whole machine this thread may be the first to go
  /// on, so what the nap that isn't over yet is late counts, too.
  std::chrono::milliseconds Total() {
    const std::lock_guard guard(mutex_);
    return std::chrono::duration_cast<std::chrono::milliseconds>(total_ + Late());
  }

  /// What an upper limit allows for the machine since its delays were `before`. A program with sanitizers
  /// computes many times as long as it should, so there the limits only end what hangs.
  std::chrono::milliseconds Allowance(std::chrono::milliseconds before = {}) {
    return Total() - before + kForSanitizers;
  }

 private:
  using Clock = std::chrono::steady_clock;

  Clock::duration Late() const { return std::max(Clock::now() - asleep_ - kNap, Clock::duration::zero()); }

  void Sleep() {
    for (;;) {
      std::this_thread::sleep_for(kNap);
      const std::lock_guard guard(mutex_);
      total_ += Late();
      asleep_ = Clock::now();
      if (ended_) {
        return;
      }
    }
  }

  static constexpr std::chrono::milliseconds kNap{10};
#ifdef KELSD_SANITIZED
  static constexpr std::chrono::seconds kForSanitizers{60};
#else
  static constexpr std::chrono::seconds kForSanitizers{0};
#endif

  std::mutex mutex_;
  Clock::duration total_{};
  Clock::time_point asleep_ = Clock::now();
  bool ended_ = false;
  std::thread thread_;
};

}  // namespace kelsd::support
