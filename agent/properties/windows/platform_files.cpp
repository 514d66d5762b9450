#include "properties/platform_files.h"

#include <windows.h>

namespace slp {

std::string DefaultGlobalPropertyFile() {
  const std::string folder = EnvironmentVariable("windir");
  return folder.empty() ? "" : folder + "\\slp.conf";
}

// The system's view of the environment: a C runtime keeps a copy of its own, and a process may hold several
// runtimes.
std::string EnvironmentVariable(const char* name) {
  std::string value;
  // The variable may grow between the question for its size and the next one.
  for (DWORD size = GetEnvironmentVariableA(name, nullptr, 0); size > value.size();) {
    value.resize(size);
    size = GetEnvironmentVariableA(name, value.data(), size);
    if (size < value.size()) {
      value.resize(size);
      break;
    }
  }
  return value;
}

}  // namespace slp
