// Messages as one readable line, for trace logs. Pure functions; any thread.
#pragma once

#include <string>

#include "slpd/registry/registration.h"
#include "slpd/request_origin.h"
#include "wire/messages.h"

namespace slp {

/// `SrvRqst xid=7 lang=en type="service:x" scopes="DEFAULT" ...`: the name, the header's fields and flags
/// that say something, and every field of the body. Texts beyond a few hundred bytes are cut and end in
/// "...".
std::string Describe(const Message& message);

/// `URL type="..." lang=en scopes="..." lifetime=300 attributes="..."`.
std::string Describe(const RegistrationView& registration);

/// `10.0.0.5 (UDP)`.
std::string Describe(const RequestOrigin& origin);

}  // namespace slp
