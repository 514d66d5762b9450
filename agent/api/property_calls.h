// The properties as calls (RFC 2614 sections 4.6.7 and 4.6.8). What they promise stands in slp.h. None
// throws; any thread.
#pragma once

#include "slp.h"

namespace slp::client {

const char* GetPropertyCall(const char* name) noexcept;
void SetPropertyCall(const char* name, const char* value) noexcept;

/// SLP_PARAMETER_BAD without a path, or when properties have been loaded already.
SLPError SetAppPropertyFileCall(const char* path) noexcept;

}  // namespace slp::client
