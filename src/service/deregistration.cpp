// Withdrawing services.
#include <mutex>

#include "service/registration_report.h"
#include "service/service_impl.h"
#include "slp/slp_handle_box.h"

namespace kelsd {

SResult CKelSLPServiceImpl::DeregisterService(const std::string& url) {
  return InvokeNamed("kelsd::CKelSLPServiceImpl::DeregisterService", [&] {
    const std::lock_guard hold(m_serviceLock);
    return DeregistrationBody(url);
  });
}

// 1. The SLP library must use the configuration file, and the URL must be one.
// 2. The service is no longer kept, whatever becomes of the rest; without services there is nothing to time.
// 3. The daemon must run, and is told.
SResult CKelSLPServiceImpl::DeregistrationBody(const std::string& url) {
  if (SResult result = ValidateOrReInitialize([] { return ReInitialize(false); }); result.IsNotOk()) {
    return result;
  }
  SKelServiceSearchResult parsed;
  if (SResult result = ParseServiceURL(parsed, url); result.IsNotOk()) {
    return result;
  }
  RegisteredServices.erase(url);
  if (RegisteredServices.empty()) {
    m_timer.reset();
  }
  if (SResult result = EnsureSLPDIsRunning(); result.IsNotOk()) {
    return result;
  }
  const std::lock_guard handle_lock(HandleLock());
  SLPHandleBox box;
  if (SResult result = OpenSLPHandle(box.handle, false); result.IsNotOk()) {
    return result;
  }
  SLPError reported = SLP_OK;
  const SLPError returned = SLPDereg(box.handle, url.c_str(), &StoreReportedCode, &reported);
  return DeregistrationResult(returned, reported);
}

}  // namespace kelsd
