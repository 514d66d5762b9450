// The searches of the C API as calls on a handle (RFC 2614 sections 4.5.4 to 4.5.6). None throws; any thread.
#pragma once

#include "slp.h"

namespace slp::client {

/// What a call needs to report its results.
template <typename Callback>
struct Reporting {
  Callback* callback;
  void* cookie;
};

SLPError FindServicesCall(SLPHandle handle, const char* type, const char* scopes, const char* predicate,
                          Reporting<SLPSrvURLCallback> reporting) noexcept;

SLPError FindAttributesCall(SLPHandle handle, const char* url_or_type, const char* scopes, const char* tags,
                            Reporting<SLPAttrCallback> reporting) noexcept;

SLPError FindServiceTypesCall(SLPHandle handle, const char* naming_authority, const char* scopes,
                              Reporting<SLPSrvTypeCallback> reporting) noexcept;

}  // namespace slp::client
