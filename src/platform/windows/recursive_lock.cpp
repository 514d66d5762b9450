#include "platform/recursive_lock.h"

#include <windows.h>

namespace kelsd::platform {

struct RecursiveLock::State {
  State() { InitializeCriticalSection(&section); }
  ~State() { DeleteCriticalSection(&section); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  CRITICAL_SECTION section;
};

RecursiveLock::RecursiveLock() : state_(std::make_unique<State>()) {}

RecursiveLock::~RecursiveLock() = default;

void RecursiveLock::lock() {
  EnterCriticalSection(&state_->section);
}

bool RecursiveLock::try_lock() {
  return TryEnterCriticalSection(&state_->section) != 0;
}

void RecursiveLock::unlock() {
  LeaveCriticalSection(&state_->section);
}

}  // namespace kelsd::platform
