// Splitting a service URL (RFC 2608 section 4.1). Stateless: any thread may call it.
#include "slp/slp_impl.h"
#include "slp/slp_memory.h"

namespace kelsd {

namespace {

std::string TextOrEmpty(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

SResult CKelSLPImpl::ParseServiceURL(SKelServiceSearchResult& result, const std::string& url) {
  return InvokeNoThrow([&url, &result]() -> SResult {
    // Failures name this call operator as the compiler does.
    const std::string name = __FUNCTION__;  // NOLINT(bugprone-lambda-function-name)
    if (url.empty()) {
      return {SResult::ERR_URL_EMPTY, "", name};
    }
    SLPSrvURL* handed_out = nullptr;
    const SLPError code = SLPParseSrvURL(url.c_str(), &handed_out);
    const SLPParsedURL parsed(handed_out);
    if (code != SLP_OK) {
      SResult::EError error = SResult::ERR_UNKNOWN;
      if (code == SLP_MEMORY_ALLOC_FAILED) {
        error = SResult::ERR_OUT_OF_MEMORY;
      } else if (code == SLP_PARSE_ERROR) {
        error = SResult::ERR_URL_INVALID;
      }
      return {error, "", name + " SLPParseSrvURL"};
    }
    if (parsed == nullptr) {
      return {SResult::ERR_UNKNOWN, "", name + " SLPParseSrvURL NULL"};
    }
    std::string host = TextOrEmpty(parsed->s_pcHost);
    if (host.empty()) {
      return {SResult::ERR_URL_ADDRESS_EMPTY, "", name};
    }
    std::string type = TextOrEmpty(parsed->s_pcSrvType);
    std::string net_family = TextOrEmpty(parsed->s_pcNetFamily);
    std::string service_part = TextOrEmpty(parsed->s_pcSrvPart);
    result.TypeString = std::move(type);
    result.Host = std::move(host);
    result.Port = static_cast<unsigned int>(parsed->s_iPort);
    result.NetFamily = std::move(net_family);
    result.ServicePart = std::move(service_part);
    return {SResult::ERR_SUCCESS};
  });
}

}  // namespace kelsd
