// Keeping registered services registered.
#include <mutex>
#include <utility>

#include "foundation/conversions.h"
#include "service/busy_guard.h"
#include "service/renewal_rules.h"
#include "service/service_impl.h"

namespace kelsd {

SResult CKelSLPServiceImpl::SetRegistrationCheckInterval(int intervalMs) {
  return InvokeNoThrow([&]() -> SResult {
    if (intervalMs < 1) {
      return {SResult::ERR_INVALID_PARAMETER,
              "Service registration check interval must be greater than zero (" + Stringify<int>(intervalMs) +
                  ").",
              "kelsd::CKelSLPServiceImpl::SetRegistrationCheckInterval"};
    }
    const std::lock_guard hold(m_serviceLock);
    if (intervalMs == m_checkIntervalMs) {
      return {SResult::ERR_SUCCESS};
    }
    m_checkIntervalMs = intervalMs;
    m_reRegistrationMarginMs = ReRegistrationMargin(intervalMs);
    if (m_timer != nullptr) {
      m_timer.reset();
      StartTimer();
    }
    return {SResult::ERR_SUCCESS};
  });
}

void CKelSLPServiceImpl::SetReRegistrationFailedCallback(std::function<void(std::string, SResult)> callback) {
  // Without the memory to keep the new callback the old one stays.
  InvokeNoThrow([&] {
    m_reports->SetCallback(std::move(callback));
    return SResult(SResult::ERR_SUCCESS);
  });
}

// Without a timer nothing is renewed until the next registration tries again.
void CKelSLPServiceImpl::StartTimer() noexcept {
  if (m_timer != nullptr) {
    return;
  }
  try {
    m_timer = m_platform.timers.Start(
        static_cast<std::uint32_t>(m_checkIntervalMs),
        {.tick = [this] { TimerTick(); }, .after_tick = [reports = m_reports] { reports->Deliver(); }});
  } catch (...) {  // NOLINT(bugprone-empty-catch): as without a timer; what called for it is done already
  }
}

// A tick is dropped while another one is in its pass. What the pass gave up is delivered by what follows the
// tick, so that deleting the timer never waits for the application's callback.
void CKelSLPServiceImpl::TimerTick() {
  {
    const std::lock_guard guard(m_passGuard);
    if (m_passRunning) {
      return;
    }
    m_passRunning = true;
  }
  try {
    CheckRegistrations(false);
  } catch (
      ...) {  // NOLINT(bugprone-empty-catch): nothing may leave a timer's thread; the next pass tries again
  }
  const std::lock_guard guard(m_passGuard);
  m_passRunning = false;
}

// 1. A pass never waits for the lock, and
// 2. does nothing while a registration or another pass is under way on this thread.
// 3. When an earlier failure has left the core uninitialised, it is initialised first: otherwise every
//    service would be given up for one failure.
// 4. A daemon that doesn't run, or doesn't tell, counts as started now: then every service is due.
// 5. In the order of URLs: renew what is due, and count failures in a row.
// 6. Services that failed too often are no longer kept. The timer goes on, even without services.
// 7. They are queued for reporting before the lock is left, so that reports keep the order of the passes.
void CKelSLPServiceImpl::CheckRegistrations(bool force) {
  const std::unique_lock hold(m_serviceLock, std::try_to_lock);
  if (!hold.owns_lock() || m_registrationBusy || RegisteredServices.empty()) {
    return;
  }
  const BusyGuard busy(m_registrationBusy);
  if (!IsInitialized()) {
    static_cast<void>(Initialize());  // a renewal tells when that failed
  }
  platform::Clock& clock = m_platform.clock;
  std::int64_t slpd_start = clock.Now();
  if (!force) {
    static_cast<void>(GetSLPDStartTimestamp(slpd_start));
  }
  const std::int64_t now = clock.Now();
  std::list<SDroppedService> dropped;
  for (auto& [url, service] : RegisteredServices) {
    if (!force && !IsRenewalDue(service.Lifetime, service.LastRegistration, slpd_start, now,
                                m_reRegistrationMarginMs)) {
      continue;
    }
    SResult result = ReRegisterService(url, service.Lifetime, service.Attributes, service.Scopes);
    if (result.IsOk()) {
      service.LastRegistration = clock.Now();
      service.FailedReRegistrations = 0;
    } else if (++service.FailedReRegistrations >= kMaxReRegistrationFailures) {
      dropped.push_back({url, std::move(result)});
    }
  }
  for (const SDroppedService& service : dropped) {
    RegisteredServices.erase(service.url);
  }
  if (force) {
    m_serviceLock.Report(std::move(dropped));
  } else {
    m_serviceLock.ReportLater(std::move(dropped));
  }
}

}  // namespace kelsd
