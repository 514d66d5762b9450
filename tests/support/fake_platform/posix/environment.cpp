#include "support/fake_platform/environment.h"

#include <cstdlib>

namespace kelsd {

void SetEnvironment(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

void ClearEnvironment(const std::string& name) {
  unsetenv(name.c_str());
}

bool EnvironmentKeepsEmptyValues() {
  return true;
}

}  // namespace kelsd
