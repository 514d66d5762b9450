// Registering as calls on a handle (RFC 2614 sections 4.5.1 to 4.5.3). Once the parameters have been taken
// the callback is called exactly once, with what the function then returns. None throws; any thread.
#pragma once

#include "api/search_calls.h"
#include "slp.h"

namespace slp::client {

struct RegistrationArguments {
  const char* url;
  unsigned short lifetime;
  const char* type;
  const char* attributes;
  bool fresh;
};

SLPError RegisterCall(SLPHandle handle, const RegistrationArguments& arguments,
                      Reporting<SLPRegReport> reporting) noexcept;

SLPError DeregisterCall(SLPHandle handle, const char* url, Reporting<SLPRegReport> reporting) noexcept;

SLPError DeleteAttributesCall(SLPHandle handle, const char* url, const char* tags,
                              Reporting<SLPRegReport> reporting) noexcept;

}  // namespace slp::client
