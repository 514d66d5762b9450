#include "api/registration_calls.h"

#include "api/handle_call.h"
#include "api/registrations.h"

namespace slp::client {
namespace {

/// Does `work`, which gets the context, and tells the callback what came of it.
template <typename Work>
SLPError Reported(SLPHandle handle, Reporting<SLPRegReport> reporting, Work work) noexcept {
  return WithHandle(handle, [&](const HandleState& state) {
    const SLPError error = work(MakeContext(state));
    if (HandleTable::Instance().IsOpen(handle)) {
      reporting.callback(handle, error, reporting.cookie);
    }
    return error;
  });
}

}  // namespace

SLPError RegisterCall(SLPHandle handle, const RegistrationArguments& arguments,
                      Reporting<SLPRegReport> reporting) noexcept {
  if (IsEmpty(arguments.url) || arguments.lifetime == 0 || arguments.attributes == nullptr ||
      reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return Reported(handle, reporting, [&](const RequestContext& context) {
    return Register({.url = arguments.url,
                     .lifetime = arguments.lifetime,
                     .type = OrEmpty(arguments.type),
                     .attributes = arguments.attributes,
                     .fresh = arguments.fresh},
                    context);
  });
}

SLPError DeregisterCall(SLPHandle handle, const char* url, Reporting<SLPRegReport> reporting) noexcept {
  if (IsEmpty(url) || reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return Reported(handle, reporting, [&](const RequestContext& context) { return Deregister(url, context); });
}

SLPError DeleteAttributesCall(SLPHandle handle, const char* url, const char* tags,
                              Reporting<SLPRegReport> reporting) noexcept {
  if (IsEmpty(url) || IsEmpty(tags) || reporting.callback == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  return Reported(handle, reporting,
                  [&](const RequestContext& context) { return DeleteAttributes(url, tags, context); });
}

}  // namespace slp::client
