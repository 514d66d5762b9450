// What a busy machine adds to the times that a test measures. One thread makes it and asks it.
#pragma once

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

  /// The sum of all delays so far.
  std::chrono::milliseconds Total() {
    const std::lock_guard guard(mutex_);
    return std::chrono::duration_cast<std::chrono::milliseconds>(total_);
  }

 private:
  void Sleep() {
    constexpr std::chrono::milliseconds kNap{10};
    for (;;) {
      const auto asleep = std::chrono::steady_clock::now();
      std::this_thread::sleep_for(kNap);
      const std::lock_guard guard(mutex_);
      total_ += std::chrono::steady_clock::now() - asleep - kNap;
      if (ended_) {
        return;
      }
    }
  }

  std::mutex mutex_;
  std::chrono::steady_clock::duration total_{};
  bool ended_ = false;
  std::thread thread_;
};

}  // namespace kelsd::support
