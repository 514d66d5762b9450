#include "service/registration_report.h"

#include <array>
#include <string>

#include "slp/error_map.h"

namespace kelsd {

namespace {

constexpr std::array<SLPErrorMapping, 13> kRegistrationErrors{{
    {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
    {SLP_INVALID_REGISTRATION, SResult::ERR_INVALID_REGISTRATION},
    {SLP_SCOPE_NOT_SUPPORTED, SResult::ERR_SCOPE_NOT_SUPPORTED},
    {SLP_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
    {SLP_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW},
    {SLP_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT},
    {SLP_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR},
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
    {SLP_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE},
}};

constexpr std::array<SLPErrorMapping, 12> kDeregistrationErrors{{
    {SLP_PARSE_ERROR, SResult::ERR_PARSE_ERROR},
    {SLP_INVALID_REGISTRATION, SResult::ERR_INVALID_DEREGISTRATION},
    {SLP_AUTHENTICATION_ABSENT, SResult::ERR_AUTHENTICATION_ABSENT},
    {SLP_AUTHENTICATION_FAILED, SResult::ERR_AUTHENTICATION_FAILED},
    {SLP_BUFFER_OVERFLOW, SResult::ERR_BUFFER_OVERFLOW},
    {SLP_NETWORK_TIMED_OUT, SResult::ERR_NETWORK_TIMED_OUT},
    {SLP_NETWORK_INIT_FAILED, SResult::ERR_NETWORK_INIT_FAILED},
    {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
    {SLP_PARAMETER_BAD, SResult::ERR_INVALID_PARAMETER},
    {SLP_NETWORK_ERROR, SResult::ERR_NETWORK_ERROR},
    {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_BASIC_API},
    {SLP_HANDLE_IN_USE, SResult::ERR_HANDLE_IN_USE},
}};

SResult ResultOf(SResult::EError (*map)(SLPError), const std::string& call, SLPError returned,
                 SLPError reported) {
  if (const SResult::EError error = map(returned); error != SResult::ERR_SUCCESS) {
    return {error, "", call};
  }
  if (const SResult::EError error = map(reported); error != SResult::ERR_SUCCESS) {
    return {error, "", call + " callback"};
  }
  return {SResult::ERR_SUCCESS};
}

}  // namespace

void SLPCALLBACK StoreReportedCode(SLPHandle, SLPError code, void* cookie) {
  *static_cast<SLPError*>(cookie) = code;
}

SResult::EError MapRegistrationError(SLPError code) {
  return MapSLPError(code, kRegistrationErrors);
}

SResult::EError MapDeregistrationError(SLPError code) {
  return MapSLPError(code, kDeregistrationErrors);
}

SResult RegistrationResult(SLPError returned, SLPError reported) {
  return ResultOf(&MapRegistrationError, "SLPReg", returned, reported);
}

SResult DeregistrationResult(SLPError returned, SLPError reported) {
  return ResultOf(&MapDeregistrationError, "SLPDereg", returned, reported);
}

}  // namespace kelsd
