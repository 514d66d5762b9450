#include "api/property_calls.h"

#include "api/handle_call.h"
#include "properties/process_properties.h"

namespace slp::client {

const char* GetPropertyCall(const char* name) noexcept {
  const char* value = nullptr;
  if (name != nullptr) {
    // Without memory there is no value either.
    static_cast<void>(Guarded([&] {
      value = ProcessProperties::Instance().Get(name);
      return SLP_OK;
    }));
  }
  return value;
}

void SetPropertyCall(const char* name, const char* value) noexcept {
  if (!IsEmpty(name)) {
    static_cast<void>(Guarded([&] {
      ProcessProperties::Instance().Set(name, OrEmpty(value));
      return SLP_OK;
    }));
  }
}

SLPError SetAppPropertyFileCall(const char* path) noexcept {
  if (IsEmpty(path)) {
    return SLP_PARAMETER_BAD;
  }
  return Guarded(
      [&] { return ProcessProperties::Instance().SetApplicationFile(path) ? SLP_OK : SLP_PARAMETER_BAD; });
}

}  // namespace slp::client
