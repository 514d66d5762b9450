// Opening SLP handles and binding them to one address. Any thread may call it.
#include <array>

#include "slp/error_map.h"
#include "slp/slp_impl.h"

namespace kelsd {

namespace {

constexpr const char* kLanguage = "en";

constexpr std::array<SLPErrorMapping, 6> kOpenErrors{{
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_NETWORK_INIT_FAILED, SResult::ERR_BASIC_NETWORK_INIT_FAILED},
    {SLP_NOT_IMPLEMENTED, SResult::ERR_ASYNC_NOT_SUPPORTED},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
}};

constexpr std::array<SLPErrorMapping, 4> kAssociateErrors{{
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
}};

}  // namespace

SResult CKelSLPImpl::OpenSLPHandle(SLPHandle& handle, bool async) {
  SLPHandle opened = nullptr;
  const SLPError code = SLPOpen(kLanguage, async ? SLP_TRUE : SLP_FALSE, &opened);
  if (code != SLP_OK) {
    return {MapSLPError(code, kOpenErrors), "", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen"};
  }
  if (opened == nullptr) {
    return {SResult::ERR_UNKNOWN, "", "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen handle NULL"};
  }
  handle = opened;
  return {SResult::ERR_SUCCESS};
}

SResult CKelSLPImpl::SLPHandleAssociateIP(SLPHandle handle, const std::string& ip) {
  const SLPError code = SLPAssociateIP(handle, ip.c_str());
  if (code != SLP_OK) {
    return {MapSLPError(code, kAssociateErrors), "",
            "kelsd::CKelSLPImpl::SLPHandleAssociateIP SLPAssociateIP"};
  }
  return {SResult::ERR_SUCCESS};
}

}  // namespace kelsd
