// The functions of the C API that are about a handle itself (RFC 2614 sections 4.4 and 4.6.2). What they
// promise stands in slp.h. None throws; any thread.
#pragma once

#include "slp.h"

namespace slp::client {

SLPError OpenCall(const char* language, bool async, SLPHandle* handle) noexcept;
void CloseCall(SLPHandle handle) noexcept;
SLPError AssociatePeerCall(SLPHandle handle, const char* address) noexcept;
SLPError AssociateInterfacesCall(SLPHandle handle, const char* interfaces) noexcept;
SLPError FindScopesCall(SLPHandle handle, char** scopes) noexcept;

}  // namespace slp::client
