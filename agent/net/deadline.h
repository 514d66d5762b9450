// A moment by which something must be done, and the clock that tells how far away it is. Values; any thread
// that may ask the clock.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

namespace slp {

/// Where the time comes from: steady, never set back.
using SteadyClock = std::function<std::chrono::steady_clock::time_point()>;

class Deadline {
 public:
  Deadline(SteadyClock clock, std::chrono::milliseconds wait)
      : clock_(std::move(clock)), moment_(clock_() + wait) {}

  /// A deadline `wait` from now, but never after this one.
  Deadline Within(std::chrono::milliseconds wait) const {
    Deadline nearer(clock_, wait);
    nearer.moment_ = std::min(nearer.moment_, moment_);
    return nearer;
  }

  void Postpone(std::chrono::steady_clock::duration by) { moment_ += by; }

  bool Passed() const { return clock_() >= moment_; }

  /// What is left, rounded up so that a wait never ends just before the moment; zero when it has passed.
  std::chrono::milliseconds Remaining() const {
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(moment_ - clock_()),
                    std::chrono::milliseconds(0));
  }

 private:
  SteadyClock clock_;
  std::chrono::steady_clock::time_point moment_;
};

}  // namespace slp
