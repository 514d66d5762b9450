// A lock that its holder may take again. Any thread may call it.
#pragma once

#include <memory>

namespace kelsd::platform {

/// The operations bear the standard library's names, so that std::unique_lock takes this lock. As often as a
/// thread locks it, so often it unlocks it.
class RecursiveLock {
 public:
  RecursiveLock();
  /// Nobody may hold or wait for the lock.
  ~RecursiveLock();
  RecursiveLock(const RecursiveLock&) = delete;
  RecursiveLock& operator=(const RecursiveLock&) = delete;

  void lock();
  /// False, at once, while another thread holds the lock.
  [[nodiscard]] bool try_lock();
  void unlock();

 private:
  struct State;
  const std::unique_ptr<State> state_;
};

}  // namespace kelsd::platform
