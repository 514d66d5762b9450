#include "support/fake_platform/environment.h"

#include <cstdlib>

namespace kelsd {

void SetEnvironment(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

void ClearEnvironment(const std::string& name) {
  _putenv_s(name.c_str(), "");
}

bool EnvironmentKeepsEmptyValues() {
  return false;
}

}  // namespace kelsd
