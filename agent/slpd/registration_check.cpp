#include "slpd/registration_check.h"

#include <algorithm>
#include <utility>

#include "text/escape.h"
#include "text/language.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp {
namespace {

/// Neither blanks nor control characters stand in a URL (RFC 2396 section 2.4.3).
bool IsUrl(std::string_view url) {
  const bool printable = std::none_of(url.begin(), url.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte <= 0x20 || byte == 0x7F;
  });
  return printable && ParseServiceUrl(url).ok();
}

/// A scope name as it stands in a list: reserved characters are escaped (RFC 2608 section 6.4.1).
bool IsScopeOnTheWire(const std::string& scope) {
  if (!Unescape(scope)) {
    return false;
  }
  std::string plain;
  for (std::size_t i = 0; i < scope.size(); ++i) {
    if (scope[i] == '\\') {
      plain += 'x';
      i += 2;
    } else {
      plain += scope[i];
    }
  }
  return IsValidScope(plain);
}

}  // namespace

bool HasConsistentValues(const AttributeList& attributes) {
  return std::all_of(attributes.items().begin(), attributes.items().end(), [](const Attribute& attribute) {
    return std::all_of(attribute.values.begin(), attribute.values.end(), [&](const AttributeValue& value) {
      return value.content.index() == attribute.values.front().content.index();
    });
  });
}

Result<CheckedRegistration> CheckRegistration(const Registration& registration) {
  Result<ServiceType> type = ParseServiceType(registration.service_type);
  Result<AttributeList> attributes = AttributeList::Parse(registration.attributes);
  if (registration.lifetime == 0 || !IsValidLanguageTag(registration.language) || !IsUrl(registration.url) ||
      !type || !attributes || !HasConsistentValues(*attributes)) {
    return Error::kInvalidRegistration;
  }
  std::vector<std::string> scopes = ListUnion({}, registration.scopes);
  if (scopes.empty() || !std::all_of(scopes.begin(), scopes.end(), IsScopeOnTheWire)) {
    return Error::kScopeNotSupported;
  }
  if (std::max({registration.url.size(), registration.service_type.size(), registration.attributes.size(),
                JoinStringList(scopes).size()}) > kMaximumTextLength) {
    return Error::kInvalidRegistration;
  }
  return CheckedRegistration{std::move(*type), std::move(scopes), std::move(*attributes)};
}

}  // namespace slp
