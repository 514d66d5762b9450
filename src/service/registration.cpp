// Registering services, once and again.
#include <algorithm>
#include <functional>
#include <iterator>
#include <mutex>
#include <utility>

#include "foundation/text.h"
#include "service/busy_guard.h"
#include "service/registration_report.h"
#include "service/service_impl.h"
#include "slp/slp_handle_box.h"

namespace kelsd {

namespace {

/// Initialises the core again on every way out of a registration that has closed its resident handle.
class CoreReopening {
 public:
  explicit CoreReopening(bool armed) : armed_(armed) {}
  ~CoreReopening() {
    if (armed_) {
      CKelSLPImpl::InvokeNoThrow([] { return CKelSLPImpl::InitializeInternal(); });
    }
  }
  CoreReopening(const CoreReopening&) = delete;
  CoreReopening& operator=(const CoreReopening&) = delete;

 private:
  const bool armed_;
};

/// The scopes in the form in which the daemon's are held, each once.
std::vector<std::string> NormalForm(const std::vector<std::string>& scopes) {
  std::vector<std::string> normal;
  for (const std::string& scope : scopes) {
    std::string cleaned = ToUpper(Trim(scope));
    if (std::find(normal.begin(), normal.end(), cleaned) == normal.end()) {
      normal.push_back(std::move(cleaned));
    }
  }
  return normal;
}

/// Those of `scopes` that the daemon isn't configured for, in their order. The caller holds the core lock.
std::vector<std::string> MissingScopes(const std::vector<std::string>& scopes) {
  const std::vector<std::string> served = CKelSLPImpl::PropertySnapshotUnlocked().GetUseScopes();
  std::vector<std::string> missing;
  std::copy_if(scopes.begin(), scopes.end(), std::back_inserter(missing), [&](const std::string& scope) {
    return std::find(served.begin(), served.end(), scope) == served.end();
  });
  return missing;
}

SResult ReadConfigurationAgain() {
  CKelSLPImpl::CloseResidentHandleUnlocked();
  return CKelSLPImpl::InitializeInternal();
}

}  // namespace

SResult CKelSLPServiceImpl::RegisterService(const std::string& url, unsigned short lifetime,
                                            const std::map<std::string, std::string>& attributes,
                                            const std::vector<std::string>& scopes) {
  const auto registration = [&] { return SRegisteredService{url, lifetime, attributes, scopes}; };
  return RegisterLocked("kelsd::CKelSLPServiceImpl::RegisterService", RegistrationKind::kNew,
                        std::cref(registration));
}

SResult CKelSLPServiceImpl::ReRegisterService(const std::string& url, unsigned short lifetime,
                                              const std::map<std::string, std::string>& attributes,
                                              const std::vector<std::string>& scopes) {
  const auto registration = [&] { return SRegisteredService{url, lifetime, attributes, scopes}; };
  return RegisterLocked("kelsd::CKelSLPServiceImpl::ReRegisterService", RegistrationKind::kRenewal,
                        std::cref(registration));
}

SResult CKelSLPServiceImpl::RegisterLocked(const char* name, RegistrationKind kind,
                                           const std::function<SRegisteredService()>& registration) {
  const auto body = [&]() -> SResult {
    const std::lock_guard hold(m_serviceLock);
    const std::unique_lock core_lock(CoreLock());
    if (!IsInitializedUnlocked()) {
      return {SResult::ERR_NOT_INITIALIZED, "", name};
    }
    const BusyGuard busy(m_registrationBusy);
    return InvokeNamed(name, [&] { return RegistrationBody(kind, registration()); });
  };
  // By reference: a function object that copies so many captures needs memory before anything guards it.
  return InvokeNoThrow(std::cref(body));
}

// 1. The SLP library must use the configuration file; it is initialised again once if it doesn't.
// 2. to 4. URL, attributes and scopes must be valid.
// 5. A new registration makes sure that the daemon serves its scopes.
// 6. The daemon must run.
// 7. For scopes of its own the resident handle is closed, so that
// 8. the handle of this registration loads the properties anew and nobody else sees
// 9. the scopes that are set for it; the core is initialised again when that handle has been closed.
// 10. and 11. Register.
// 12. A new registration is kept from now on.
SResult CKelSLPServiceImpl::RegistrationBody(RegistrationKind kind, const SRegisteredService& service) {
  if (SResult result = ValidateOrReInitialize([] { return ReInitializeInternal(false); }); result.IsNotOk()) {
    return result;
  }
  SKelServiceSearchResult parsed;
  if (SResult result = ParseServiceURL(parsed, service.URL); result.IsNotOk()) {
    return result;
  }
  std::string attributes;
  if (SResult result = CreateSLPAttributeList(attributes, service.Attributes); result.IsNotOk()) {
    return result;
  }
  std::string scopes;
  if (SResult result = CreateScopesList(scopes, service.Scopes); result.IsNotOk()) {
    return result;
  }
  const bool has_scopes = !service.Scopes.empty();
  if (has_scopes && kind == RegistrationKind::kNew) {
    if (SResult result = AdmitScopes(service.Scopes); result.IsNotOk()) {
      return result;
    }
  }
  if (SResult result = EnsureSLPDIsRunning(); result.IsNotOk()) {
    return result;
  }
  if (has_scopes) {
    CloseResidentHandleUnlocked();
  }
  const CoreReopening reopening(has_scopes);
  SLPHandleBox box;
  if (SResult result = OpenSLPHandle(box.handle, false); result.IsNotOk()) {
    return result;
  }
  if (has_scopes) {
    SetSLPProperty(CKelSLPConfig::PROP_USESCOPES, scopes);
  }
  SLPError reported = SLP_OK;
  const SLPError returned = SLPReg(box.handle, service.URL.c_str(), service.Lifetime, nullptr,
                                   attributes.c_str(), SLP_TRUE, &StoreReportedCode, &reported);
  SResult result = RegistrationResult(returned, reported);
  if (result.IsOk() && kind == RegistrationKind::kNew) {
    StoreRegisteredService(service);
  }
  return result;
}

// 1. Nothing is done when the daemon is configured for all scopes, in whatever letter case they were given.
// 2. Somebody else may have changed the configuration: read it again and look again.
// 3. What is still missing goes behind what is there, and the daemon is started anew to take it over.
// 4. The core reads what has been written.
SResult CKelSLPServiceImpl::AdmitScopes(const std::vector<std::string>& scopes) {
  const std::vector<std::string> requested = NormalForm(scopes);
  if (MissingScopes(requested).empty()) {
    return {SResult::ERR_SUCCESS};
  }
  if (SResult result = ReadConfigurationAgain(); result.IsNotOk()) {
    return result;
  }
  const std::vector<std::string> missing = MissingScopes(requested);
  if (missing.empty()) {
    return {SResult::ERR_SUCCESS};
  }
  std::vector<std::string> all = PropertySnapshotUnlocked().GetUseScopes();
  all.insert(all.end(), missing.begin(), missing.end());
  if (SResult result = SetLocalScopes(all); result.IsNotOk()) {
    return result;
  }
  if (SResult result = RestartSLPD(); result.IsNotOk()) {
    return result;
  }
  return ReadConfigurationAgain();
}

void CKelSLPServiceImpl::StoreRegisteredService(SRegisteredService service) {
  service.LastRegistration = m_platform.clock.Now();
  service.FailedReRegistrations = 0;
  std::string url = service.URL;
  RegisteredServices.insert_or_assign(std::move(url), std::move(service));
  StartTimer();
}

std::map<std::string, SRegisteredService> CKelSLPServiceImpl::GetRegisteredServices() {
  const std::lock_guard hold(m_serviceLock);
  return RegisteredServices;
}

}  // namespace kelsd
