#include "platform/recursive_lock.h"

#include <mutex>

namespace kelsd::platform {

struct RecursiveLock::State {
  std::recursive_mutex mutex;
};

RecursiveLock::RecursiveLock() : state_(std::make_unique<State>()) {}

RecursiveLock::~RecursiveLock() = default;

void RecursiveLock::lock() {
  state_->mutex.lock();
}

bool RecursiveLock::try_lock() {
  return state_->mutex.try_lock();
}

void RecursiveLock::unlock() {
  state_->mutex.unlock();
}

}  // namespace kelsd::platform
