#include "service_kind.h"

#include "kelsd/CKelServiceTypeServiceHost.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "kelsd/CKelServiceTypeZDTerminalREST.h"

namespace kelsd_tool {
namespace {

constexpr unsigned short kAnyLifetime = 300;

std::string AddressOf(const std::string& url) {
  const auto separator = url.find("://");
  return separator == std::string::npos ? std::string() : url.substr(separator + 3);
}

bool IsServiceHost(const std::string& type) {
  return type.rfind(kelsd::CKelServiceTypeServiceHost::GetAbstractTypeString() + ":", 0) == 0;
}

}  // namespace

ServiceKind ParseServiceKind(const std::string& text) {
  const kelsd::CKelServiceTypeZDREST zdrest("", kAnyLifetime);
  const kelsd::CKelServiceTypeZDTerminalREST terminal("", kAnyLifetime);
  const std::string host = kelsd::CKelServiceTypeServiceHost::GetAbstractTypeString();
  static constexpr const char* kHostPrefix = "servicehost:";

  if (text == "zdrest" || text == zdrest.GetTypeString()) {
    return {zdrest.GetTypeString(), zdrest.GetScopes()};
  }
  if (text == "terminal" || text == terminal.GetTypeString()) {
    return {terminal.GetTypeString(), terminal.GetScopes()};
  }
  if (text == "servicehost" || text == host) {
    return {host, kelsd::CKelServiceTypeServiceHost("", "", kAnyLifetime).GetScopes()};
  }
  if (text.rfind(kHostPrefix, 0) == 0) {
    const kelsd::CKelServiceTypeServiceHost concrete(text.substr(std::string(kHostPrefix).size()), "",
                                                     kAnyLifetime);
    return {concrete.GetTypeString(), concrete.GetScopes()};
  }
  if (IsServiceHost(text)) {
    return {text, kelsd::CKelServiceTypeServiceHost("", "", kAnyLifetime).GetScopes()};
  }
  return {text, {}};
}

std::unique_ptr<kelsd::CKelServiceTypeTamroBase> MakeFamilyService(const std::string& type,
                                                                   const std::string& url) {
  const std::string address = AddressOf(url);
  if (type == kelsd::CKelServiceTypeZDREST("", kAnyLifetime).GetTypeString()) {
    return std::make_unique<kelsd::CKelServiceTypeZDREST>(address, kAnyLifetime);
  }
  if (type == kelsd::CKelServiceTypeZDTerminalREST("", kAnyLifetime).GetTypeString()) {
    return std::make_unique<kelsd::CKelServiceTypeZDTerminalREST>(address, kAnyLifetime);
  }
  if (IsServiceHost(type)) {
    const auto prefix = kelsd::CKelServiceTypeServiceHost::GetAbstractTypeString().size() + 1;
    return std::make_unique<kelsd::CKelServiceTypeServiceHost>(type.substr(prefix), address, kAnyLifetime);
  }
  return nullptr;
}

}  // namespace kelsd_tool
