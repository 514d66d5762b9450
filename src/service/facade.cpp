// The exported face of the service agent. Any thread may call it.
#include <functional>
#include <utility>

#include "kelsd/CKelSLPService.h"
#include "service/service_impl.h"

namespace kelsd {

namespace {

CKelSLPServiceImpl& Agent() {
  return CKelSLPServiceImpl::Instance();
}

}  // namespace

CKelSLPService::~CKelSLPService() = default;

SResult CKelSLPService::RegisterService(const std::string& url, unsigned short lifetime,
                                        const std::map<std::string, std::string>& attributes,
                                        const std::vector<std::string>& scopes) {
  return Agent().RegisterService(url, lifetime, attributes, scopes);
}

SResult CKelSLPService::RegisterService(const std::string& url, unsigned short lifetime,
                                        const std::map<IKelServiceType::EAttr, std::string>& attributes,
                                        const std::vector<std::string>& scopes) {
  const auto body = [&] {
    std::map<std::string, std::string> named;
    for (const auto& [tag, value] : attributes) {
      named.insert_or_assign(IKelServiceType::ToString(tag), value);
    }
    return RegisterService(url, lifetime, named, scopes);
  };
  // By reference: a function object that copies so many captures needs memory before anything guards it.
  return CKelSLPImpl::InvokeNoThrow(std::cref(body));
}

SResult CKelSLPService::RegisterService(const IKelServiceType& type) {
  return CKelSLPImpl::InvokeNoThrow([&] {
    return RegisterService(type.GetServiceURL(), type.GetLifetime(), type.GetAttributes(), type.GetScopes());
  });
}

SResult CKelSLPService::DeregisterService(const std::string& url) {
  return Agent().DeregisterService(url);
}

SResult CKelSLPService::DeregisterService(const IKelServiceType& type) {
  return CKelSLPImpl::InvokeNoThrow([&] { return DeregisterService(type.GetServiceURL()); });
}

SResult CKelSLPService::SetRegistrationCheckInterval(int intervalMs) {
  return Agent().SetRegistrationCheckInterval(intervalMs);
}

void CKelSLPService::SetReRegistrationFailedCallback(std::function<void(std::string, SResult)> callback) {
  Agent().SetReRegistrationFailedCallback(std::move(callback));
}

SResult CKelSLPService::StartSLPD() {
  return Agent().StartSLPD();
}

SResult CKelSLPService::StopSLPD() {
  return Agent().StopSLPD();
}

SResult CKelSLPService::RestartSLPD() {
  return Agent().RestartSLPD();
}

SResult CKelSLPService::IsSLPDRunning(bool& running) {
  return Agent().IsSLPDRunning(running);
}

SResult CKelSLPService::GetSLPServiceConfig(CKelSLPServiceConfig& config, std::vector<SResult>& errors) {
  return Agent().GetSLPServiceConfig(config, errors);
}

SResult CKelSLPService::SetSLPServiceConfig(const CKelSLPServiceConfig& config) {
  return Agent().SetSLPServiceConfig(config);
}

}  // namespace kelsd
