// The exported face of the service agent. Any thread may call it.
#include <functional>
#include <utility>

#include "kelsd/CKelSLPService.h"
#include "service/service_impl.h"

namespace kelsd {

namespace {

/// Makes `call` of the agent, which is made at first use: also for that there may be no memory.
template <typename Call>
SResult WithAgent(const Call& call) {
  const auto body = [&] { return call(CKelSLPServiceImpl::Instance()); };
  // By reference, since a function object that copies its captures may need memory before anything guards it.
  return CKelSLPImpl::InvokeNoThrow(std::cref(body));
}

using Agent = CKelSLPServiceImpl;

}  // namespace

CKelSLPService::~CKelSLPService() = default;

SResult CKelSLPService::RegisterService(const std::string& url, unsigned short lifetime,
                                        const std::map<std::string, std::string>& attributes,
                                        const std::vector<std::string>& scopes) {
  return WithAgent([&](Agent& agent) { return agent.RegisterService(url, lifetime, attributes, scopes); });
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
  return WithAgent([&](Agent& agent) { return agent.DeregisterService(url); });
}

SResult CKelSLPService::DeregisterService(const IKelServiceType& type) {
  return CKelSLPImpl::InvokeNoThrow([&] { return DeregisterService(type.GetServiceURL()); });
}

SResult CKelSLPService::SetRegistrationCheckInterval(int intervalMs) {
  return WithAgent([&](Agent& agent) { return agent.SetRegistrationCheckInterval(intervalMs); });
}

void CKelSLPService::SetReRegistrationFailedCallback(std::function<void(std::string, SResult)> callback) {
  WithAgent([&](Agent& agent) {
    agent.SetReRegistrationFailedCallback(std::move(callback));
    return SResult(SResult::ERR_SUCCESS);
  });
}

SResult CKelSLPService::StartSLPD() {
  return WithAgent([&](Agent& agent) { return agent.StartSLPD(); });
}

SResult CKelSLPService::StopSLPD() {
  return WithAgent([&](Agent& agent) { return agent.StopSLPD(); });
}

SResult CKelSLPService::RestartSLPD() {
  return WithAgent([&](Agent& agent) { return agent.RestartSLPD(); });
}

SResult CKelSLPService::IsSLPDRunning(bool& running) {
  return WithAgent([&](Agent& agent) { return agent.IsSLPDRunning(running); });
}

SResult CKelSLPService::GetSLPServiceConfig(CKelSLPServiceConfig& config, std::vector<SResult>& errors) {
  return WithAgent([&](Agent& agent) { return agent.GetSLPServiceConfig(config, errors); });
}

SResult CKelSLPService::SetSLPServiceConfig(const CKelSLPServiceConfig& config) {
  return WithAgent([&](Agent& agent) { return agent.SetSLPServiceConfig(config); });
}

}  // namespace kelsd
