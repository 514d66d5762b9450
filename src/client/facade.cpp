// The exported face of the discovery client. Any thread may call it.
#include "client/client_impl.h"
#include "kelsd/CKelSLPClient.h"
#include "slp/slp_impl.h"

namespace kelsd {

CKelSLPClient::~CKelSLPClient() = default;

SResult CKelSLPClient::FindServices(std::vector<SKelServiceSearchResult>& results,
                                    const std::string& serviceType, const std::vector<std::string>& scopes,
                                    const std::string& searchFilter, const std::string& address) {
  return CKelSLPClientImpl::FindServices(results, serviceType, scopes, searchFilter, address);
}

SResult CKelSLPClient::FindServices(std::vector<SKelServiceSearchResult>& results,
                                    const IKelServiceType& type, const std::string& searchFilter,
                                    const std::string& address) {
  return CKelSLPClientImpl::FindServices(results, type, searchFilter, address);
}

SResult CKelSLPClient::FindAttributes(SKelServiceAttributeSearchResult& result, const std::string& serviceURL,
                                      const std::vector<std::string>& tags,
                                      const std::vector<std::string>& scopes, const std::string& address) {
  return CKelSLPClientImpl::FindAttributes(result, serviceURL, tags, scopes, address);
}

SResult CKelSLPClient::FindAttributes(SKelServiceAttributeSearchResult& result, const std::string& serviceURL,
                                      const std::vector<IKelServiceType::EAttr>& tags,
                                      const std::vector<std::string>& scopes, const std::string& address) {
  return CKelSLPClientImpl::FindAttributes(result, serviceURL, tags, scopes, address);
}

SResult CKelSLPClient::FindAttributes(SKelServiceAttributeSearchResult& result, const IKelServiceType& type,
                                      const std::string& address) {
  return CKelSLPClientImpl::FindAttributes(result, type, address);
}

SResult CKelSLPClient::GetSLPClientConfig(CKelSLPClientConfig& config, std::vector<SResult>& errors) {
  return CKelSLPImpl::GetSLPClientConfig(config, errors);
}

SResult CKelSLPClient::SetSLPClientConfig(const CKelSLPClientConfig& config) {
  return CKelSLPImpl::SetSLPClientConfig(config);
}

}  // namespace kelsd
