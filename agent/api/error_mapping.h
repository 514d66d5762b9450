// From the protocol's error codes to those of the C API. Pure; any thread.
#pragma once

#include "base/error.h"
#include "slp.h"

namespace slp::client {

/// A code that both know is the protocol's with its sign changed (RFC 2614 section 4.1.2); the others become
/// what comes nearest.
SLPError ToSlpError(Error error);

}  // namespace slp::client
