// Owners of memory that the SLP API hands out. Used by one thread at a time.
#pragma once

#include <slp.h>

#include <memory>

namespace kelsd {

struct SLPMemoryRelease {
  void operator()(void* memory) const { SLPFree(memory); }
};

using SLPText = std::unique_ptr<char, SLPMemoryRelease>;
using SLPParsedURL = std::unique_ptr<SLPSrvURL, SLPMemoryRelease>;

}  // namespace kelsd
