#include <windows.h>

#include "support/open_descriptors/open_descriptors.h"

namespace kelsd::support {

std::ptrdiff_t OpenDescriptors() {
  DWORD handles = 0;
  return ::GetProcessHandleCount(::GetCurrentProcess(), &handles) != FALSE
             ? static_cast<std::ptrdiff_t>(handles)
             : -1;
}

}  // namespace kelsd::support
