#include "net/local_process.h"

#include <unistd.h>

namespace slp {

std::uint32_t CurrentProcessId() {
  return static_cast<std::uint32_t>(::getpid());
}

}  // namespace slp
