#include "api/search_calls.h"

#include "api/handle_call.h"
#include "api/searches.h"

namespace slp::client {
namespace {

/// SLPAttrCallback and SLPSrvTypeCallback are the same type of function.
Deliver ListDelivery(SLPHandle handle, Reporting<SLPAttrCallback> reporting) {
  return [=](const char* text, unsigned short /*lifetime*/, SLPError error) {
    return DeliverWhileOpen(
        handle, [&] { return reporting.callback(handle, text, error, reporting.cookie) != SLP_FALSE; });
  };
}

}  // namespace

SLPError FindServicesCall(SLPHandle handle, const char* type, const char* scopes, const char* predicate,
                          Reporting<SLPSrvURLCallback> reporting) noexcept {
  if (IsEmpty(type) || reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return WithHandle(handle, [&](const HandleState& state) {
    return FindServices({.type = type, .scopes = OrEmpty(scopes), .predicate = OrEmpty(predicate)},
                        MakeContext(state), [&](const char* url, unsigned short lifetime, SLPError error) {
                          return DeliverWhileOpen(handle, [&] {
                            return reporting.callback(handle, url, lifetime, error, reporting.cookie) !=
                                   SLP_FALSE;
                          });
                        });
  });
}

SLPError FindAttributesCall(SLPHandle handle, const char* url_or_type, const char* scopes, const char* tags,
                            Reporting<SLPAttrCallback> reporting) noexcept {
  if (IsEmpty(url_or_type) || reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return WithHandle(handle, [&](const HandleState& state) {
    return FindAttributes({.url_or_type = url_or_type, .scopes = OrEmpty(scopes), .tags = OrEmpty(tags)},
                          MakeContext(state), ListDelivery(handle, reporting));
  });
}

SLPError FindServiceTypesCall(SLPHandle handle, const char* naming_authority, const char* scopes,
                              Reporting<SLPSrvTypeCallback> reporting) noexcept {
  if (naming_authority == nullptr || reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return WithHandle(handle, [&](const HandleState& state) {
    return FindServiceTypes({.naming_authority = naming_authority, .scopes = OrEmpty(scopes)},
                            MakeContext(state), ListDelivery(handle, {reporting.callback, reporting.cookie}));
  });
}

}  // namespace slp::client
