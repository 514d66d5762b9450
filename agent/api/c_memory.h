// Memory that callers release with SLPFree. Any thread.
#pragma once

#include <string_view>

#include "slp.h"
#include "text/service_url.h"

namespace slp::client {

/// A terminated copy; never null, std::bad_alloc when there is no memory.
char* NewText(std::string_view text);

/// The parts in one piece of memory.
SLPSrvURL* NewUrl(const ServiceUrl& url);

void ReleaseMemory(void* memory);

}  // namespace slp::client
