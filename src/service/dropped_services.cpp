#include "service/dropped_services.h"

#include <utility>

namespace kelsd {

void DroppedServiceReports::SetCallback(Callback callback) {
  auto stored = callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
  // The old one is destroyed after the mutex has been left: its destructor is the application's.
  const std::lock_guard lock(mutex_);
  callback_.swap(stored);
}

void DroppedServiceReports::Add(std::list<SDroppedService> dropped) noexcept {
  const std::lock_guard lock(mutex_);
  queue_.splice(queue_.end(), dropped);
}

void DroppedServiceReports::Deliver() noexcept {
  std::unique_lock lock(mutex_);
  if (delivering_) {
    return;
  }
  delivering_ = true;
  while (!queue_.empty()) {
    std::list<SDroppedService> next;
    next.splice(next.end(), queue_, queue_.begin());
    std::shared_ptr<const Callback> callback = callback_;
    lock.unlock();
    if (callback != nullptr) {
      try {
        (*callback)(next.front().url, next.front().result);
      } catch (...) {  // NOLINT(bugprone-empty-catch): the other services are reported all the same
      }
      callback.reset();
    }
    lock.lock();
  }
  delivering_ = false;
}

}  // namespace kelsd
