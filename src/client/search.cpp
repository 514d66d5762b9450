// The parts of a search that service and attribute searches share. Any thread may call it.
#include "client/search.h"

#include <array>

#include "foundation/text.h"
#include "slp/error_map.h"

namespace kelsd {

namespace {

constexpr std::array<SLPErrorMapping, 11> kSearchErrors{{
    {SLP_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE},
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
    {SLP_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED},
    {SLP_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT},
    {SLP_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
    {SLP_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT},
    {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
}};

}  // namespace

SResult SearchResult(const char* call, SLPError answer, const SearchOutcome& outcome) {
  if (outcome.exception != nullptr) {
    std::rethrow_exception(outcome.exception);
  }
  const SResult::EError of_call = MapSLPError(answer, kSearchErrors);
  if (of_call != SResult::ERR_SUCCESS) {
    return {of_call, "", call};
  }
  const SResult::EError of_callback = MapSLPError(outcome.error, kSearchErrors);
  if (of_callback != SResult::ERR_SUCCESS) {
    return {of_callback, "", std::string(call) + " callback"};
  }
  return {SResult::ERR_SUCCESS};
}

SResult MakeSearchScopes(std::string& list, const std::vector<std::string>& scopes) {
  return CKelSLPImpl::CreateScopesList(list, NormalizeList(scopes, false));
}

SResult OpenSearchHandle(SLPHandleBox& box, const std::string& address) {
  SResult opened = CKelSLPImpl::OpenSLPHandle(box.handle, false);
  if (opened.IsNotOk() || address.empty()) {
    return opened;
  }
  return CKelSLPImpl::SLPHandleAssociateIP(box.handle, address);
}

}  // namespace kelsd
