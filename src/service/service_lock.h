// Holding m_serviceLock for the length of a scope. One thread an object.
#pragma once

#include <list>
#include <utility>

#include "service/service_impl.h"

namespace kelsd {

/// Enters the lock, or only tries to. What forced passes gave up meanwhile is reported when the outermost
/// hold ends. It is queued before the lock is left, so that reports keep the order of the passes, and
/// delivered afterwards: the application's callback may wait for other threads that need the lock.
class CKelSLPServiceImpl::ServiceLockHold {
 public:
  explicit ServiceLockHold(CKelSLPServiceImpl& agent) : agent_(agent), held_(true) {
    agent_.m_serviceLock.lock();
    ++agent_.m_serviceLockDepth;
  }
  ServiceLockHold(CKelSLPServiceImpl& agent, std::try_to_lock_t)
      : agent_(agent), held_(agent.m_serviceLock.try_lock()) {
    if (held_) {
      ++agent_.m_serviceLockDepth;
    }
  }
  ~ServiceLockHold() {
    if (!held_) {
      return;
    }
    bool reports = false;
    if (--agent_.m_serviceLockDepth == 0 && !agent_.m_droppedServices.empty()) {
      agent_.m_reports->Add(std::exchange(agent_.m_droppedServices, {}));
      reports = true;
    }
    agent_.m_serviceLock.unlock();
    if (reports) {
      agent_.m_reports->Deliver();
    }
  }
  ServiceLockHold(const ServiceLockHold&) = delete;
  ServiceLockHold& operator=(const ServiceLockHold&) = delete;

  bool held() const { return held_; }

 private:
  CKelSLPServiceImpl& agent_;
  const bool held_;
};

}  // namespace kelsd
