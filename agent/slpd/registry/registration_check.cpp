#include "slpd/registry/registration_check.h"

#include <algorithm>
#include <utility>

#include "text/language.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {

Result<CheckedRegistration> CheckRegistration(const Registration& registration) {
  Result<ServiceType> type = ParseServiceType(registration.service_type);
  Result<AttributeList> attributes = AttributeList::Parse(registration.attributes);
  if (registration.lifetime == 0 || !IsValidLanguageTag(registration.language) ||
      !ParseServiceUrl(registration.url) || !type || !attributes) {
    return Error::kInvalidRegistration;
  }
  std::vector<std::string> scopes = ListUnion({}, registration.scopes);
  if (scopes.empty() || !std::all_of(scopes.begin(), scopes.end(), IsValidScope)) {
    return Error::kScopeNotSupported;
  }
  if (registration.service_type.size() > kLongestServiceType ||
      std::max({registration.url.size(), registration.attributes.size(), JoinStringList(scopes).size()}) >
          kMaximumTextLength) {
    return Error::kInvalidRegistration;
  }
  return CheckedRegistration{std::move(*type), std::move(scopes), std::move(*attributes)};
}

}  // namespace slp
