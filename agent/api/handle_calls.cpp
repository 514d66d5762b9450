#include "api/handle_calls.h"

#include "api/c_memory.h"
#include "api/handle_call.h"
#include "net/addresses.h"
#include "net/interfaces.h"
#include "properties/process_properties.h"
#include "text/fold.h"
#include "text/language.h"
#include "text/string_list.h"

namespace slp::client {
namespace {

constexpr const char* kDefaultLanguage = "en";

/// The language of a handle for which none has been asked.
std::string LanguageOfProcess() {
  const std::string locale(Trim(ProcessProperties::Instance().Snapshot()->GetString("net.slp.locale")));
  return IsValidLanguageTag(locale) ? locale : kDefaultLanguage;
}

bool UsesIpv6() {
  return ProcessProperties::Instance().Snapshot()->GetBool("net.slp.useIPv6");
}

}  // namespace

SLPError OpenCall(const char* language, bool async, SLPHandle* handle) noexcept {
  if (handle == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *handle = nullptr;
  if (async) {
    return SLP_NOT_IMPLEMENTED;
  }
  if (!IsEmpty(language) && !IsValidLanguageTag(language)) {
    return SLP_PARAMETER_BAD;
  }
  return Guarded([&] {
    auto share = std::make_unique<PropertiesShare>();
    HandleState state;
    state.language = IsEmpty(language) ? LanguageOfProcess() : language;
    *handle = HandleTable::Instance().Open(std::move(state), std::move(share));
    return SLP_OK;
  });
}

void CloseCall(SLPHandle handle) noexcept {
  HandleTable::Instance().Close(handle);
}

SLPError AssociatePeerCall(SLPHandle handle, const char* address) noexcept {
  if (IsEmpty(address)) {
    return SLP_PARAMETER_BAD;
  }
  return WithHandle(handle, [&](HandleState& state) {
    const bool ipv6 = UsesIpv6();
    const auto peer = ParseUsableAddress(std::string(Trim(address)), ipv6);
    if (!peer || peer->is_unspecified() || peer->is_multicast()) {
      return SLP_PARAMETER_BAD;
    }
    state.peer =
        ipv6 ? OnSomeLink(EnumerateInterfaces(true).value_or(std::vector<Interface>()), *peer) : *peer;
    return SLP_OK;
  });
}

SLPError AssociateInterfacesCall(SLPHandle handle, const char* interfaces) noexcept {
  if (IsEmpty(interfaces)) {
    return SLP_PARAMETER_BAD;
  }
  return WithHandle(handle, [&](HandleState& state) {
    std::vector<std::string> wanted = SplitStringList(interfaces);
    if (wanted.empty()) {
      return SLP_PARAMETER_BAD;
    }
    const auto all = EnumerateInterfaces(UsesIpv6());
    if (!all) {
      return SLP_NETWORK_INIT_FAILED;
    }
    if (!SelectInterfaces(*all, wanted).unknown.empty()) {
      return SLP_PARAMETER_BAD;
    }
    state.interfaces = std::move(wanted);
    return SLP_OK;
  });
}

SLPError FindScopesCall(SLPHandle handle, char** scopes) noexcept {
  if (scopes == nullptr) {
    return SLP_PARAMETER_BAD;
  }
  *scopes = nullptr;
  return WithHandle(handle, [&](const HandleState& state) {
    *scopes = NewText(MakeContext(state).settings.scopes);
    return SLP_OK;
  });
}

}  // namespace slp::client
