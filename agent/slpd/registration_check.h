// Whether a registration may be stored: everything that could fail later is refused here. Pure functions; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "slpd/registration.h"
#include "text/attributes.h"
#include "text/service_type.h"

namespace slp {

/// The longest text that a message can carry.
inline constexpr std::size_t kMaximumTextLength = 0xFFFF;

/// What a registration consists of, in parts.
struct CheckedRegistration {
  ServiceType type;
  std::vector<std::string> scopes;  ///< each once
  AttributeList attributes;
};

/// kInvalidRegistration for a URL, service type, language, lifetime or attribute list that is not one, or a
/// text too long to be sent; kScopeNotSupported when there is no scope or one that is no scope name.
Result<CheckedRegistration> CheckRegistration(const Registration& registration);

}  // namespace slp
