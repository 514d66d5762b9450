// The lock of the service agent, which tells of the services that were given up while it was held. Any thread
// may call it.
#pragma once

#include <list>
#include <utility>

#include "service/dropped_services.h"

namespace kelsd {

/// A `Lock` that its holder may take again. What the holders reported is queued before the outermost of them
/// leaves, so that reports keep the order in which the lock was held, and delivered afterwards: the
/// application's callback may wait for other threads that need the lock. The outermost holder delivers when
/// it leaves, unless it delivers at a time of its own.
///
/// The operations bear the standard library's names, so that std::lock_guard takes this lock.
template <typename Lock>
class ReportingLock {
 public:
  /// `reports` outlives this object.
  explicit ReportingLock(DroppedServiceReports& reports) : reports_(reports) {}

  void lock() {
    lock_.lock();
    ++depth_;
  }

  [[nodiscard]] bool try_lock() {
    if (!lock_.try_lock()) {
      return false;
    }
    ++depth_;
    return true;
  }

  void unlock() {
    const bool reports = --depth_ == 0 && !dropped_.empty();
    if (reports) {
      reports_.Add(std::exchange(dropped_, {}));
    }
    lock_.unlock();
    if (reports) {
      reports_.Deliver();
    }
  }

  /// Delivered when the lock is left. The caller holds it.
  void Report(std::list<SDroppedService> dropped) noexcept { dropped_.splice(dropped_.end(), dropped); }

  /// For a caller, holding the lock, that delivers by itself some time after it has left it.
  void ReportLater(std::list<SDroppedService> dropped) noexcept { reports_.Add(std::move(dropped)); }

 private:
  DroppedServiceReports& reports_;
  Lock lock_;
  // Guarded by lock_.
  int depth_ = 0;
  std::list<SDroppedService> dropped_;
};

}  // namespace kelsd
