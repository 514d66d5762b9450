#include "api/error_mapping.h"

#include <algorithm>
#include <iterator>

namespace slp::client {
namespace {

struct Mapping {
  Error protocol;
  SLPError api;
};

constexpr Mapping kMappings[] = {
    {Error::kOk, SLP_OK},
    {Error::kLanguageNotSupported, SLP_LANGUAGE_NOT_SUPPORTED},
    {Error::kParseError, SLP_PARSE_ERROR},
    {Error::kInvalidRegistration, SLP_INVALID_REGISTRATION},
    {Error::kScopeNotSupported, SLP_SCOPE_NOT_SUPPORTED},
    {Error::kAuthenticationUnknown, SLP_AUTHENTICATION_FAILED},
    {Error::kAuthenticationAbsent, SLP_AUTHENTICATION_ABSENT},
    {Error::kAuthenticationFailed, SLP_AUTHENTICATION_FAILED},
    {Error::kVersionNotSupported, SLP_NOT_IMPLEMENTED},
    {Error::kInternalError, SLP_NETWORK_ERROR},
    {Error::kDaBusyNow, SLP_NETWORK_TIMED_OUT},
    {Error::kOptionNotUnderstood, SLP_NOT_IMPLEMENTED},
    {Error::kInvalidUpdate, SLP_INVALID_UPDATE},
    {Error::kMessageNotSupported, SLP_NOT_IMPLEMENTED},
    {Error::kRefreshRejected, SLP_REFRESH_REJECTED},
};

}  // namespace

SLPError ToSlpError(Error error) {
  const auto* const mapping = std::find_if(std::begin(kMappings), std::end(kMappings),
                                           [&](const Mapping& entry) { return entry.protocol == error; });
  return mapping == std::end(kMappings) ? SLP_NETWORK_ERROR : mapping->api;
}

}  // namespace slp::client
