// Environment variables of this process, as getenv sees them. Not while another thread reads them.
#pragma once

#include <string>

namespace kelsd {

void SetEnvironment(const std::string& name, const std::string& value);
void ClearEnvironment(const std::string& name);

/// Whether a variable can exist with an empty value.
bool EnvironmentKeepsEmptyValues();

}  // namespace kelsd
