#include "properties/platform_files.h"

#include <cstdlib>

namespace slp {

std::string DefaultGlobalPropertyFile() {
  return "/etc/slp.conf";
}

std::string EnvironmentVariable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace slp
