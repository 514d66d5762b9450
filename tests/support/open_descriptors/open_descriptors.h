// Whether what a test opens is closed again.
#pragma once

#include <cstddef>

namespace kelsd::support {

/// How many files and sockets this process has open now; on Windows its handles, those of threads among them.
std::ptrdiff_t OpenDescriptors();

}  // namespace kelsd::support
