#include "net/local_process.h"

#include <windows.h>

namespace slp {

std::uint32_t CurrentProcessId() {
  return GetCurrentProcessId();
}

}  // namespace slp
