// Whether a registration may be stored: everything that could fail later is refused here. Pure functions; any
// thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "slpd/registry/registration.h"
#include "text/attributes.h"
#include "text/service_type.h"

namespace slp {

/// The longest text that a message can carry.
inline constexpr std::size_t kMaximumTextLength = 0xFFFF;

/// The longest service type that is taken: far more than any in use needs (RFC 2609 section 2.1 sets no
/// bound). Each type is kept with what it takes to find it, and a peer must not fill the memory with them.
inline constexpr std::size_t kLongestServiceType = 256;

/// What a registration consists of, in parts.
struct CheckedRegistration {
  ServiceType type;
  std::vector<std::string> scopes;  ///< each once
  AttributeList attributes;
};

/// kInvalidRegistration for a URL, service type, language, lifetime or attribute list that is not one, a
/// text too long to be sent, or a type beyond kLongestServiceType; kScopeNotSupported when there is no scope
/// or one that is no scope name.
Result<CheckedRegistration> CheckRegistration(const Registration& registration);

}  // namespace slp
