// Waiting for what other processes and threads do where nothing tells. Any thread.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace kelsd::support {

/// Beyond the longest standstill of a busy machine.
inline constexpr std::chrono::seconds kLongEnough{30};

/// Whether `condition` came to hold within `limit`.
inline bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = kLongEnough) {
  // A short pause between two looks is all there is.
  constexpr std::chrono::milliseconds kPause{5};
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) {
      return false;
    }
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace kelsd::support
