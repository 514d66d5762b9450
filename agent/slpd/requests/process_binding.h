// The extension with which a program binds a registration to the life of its process. Pure functions; any
// thread.
#pragma once

#include <cstdint>
#include <vector>

#include "base/error.h"
#include "wire/messages.h"

namespace slp {

/// The process id in `extensions`, kExtensionProcessId before the experimental one; 0 when there is none.
/// kParseError when the payload of kExtensionProcessId is not four bytes; an experimental one like that is
/// passed over (RFC 2608 section 9.1: what is not understood there is ignored).
Result<std::uint32_t> ProcessIdOf(const std::vector<Extension>& extensions);

}  // namespace slp
