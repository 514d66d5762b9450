#include "slpd/server/default_paths.h"

#include "properties/platform_files.h"

namespace slp {

std::string DefaultPidFile() {
  return EnvironmentVariable("KELSD_SLPD_PIDFILE");
}

std::string DefaultRegistrationFile() {
  const std::string folder = EnvironmentVariable("windir");
  return folder.empty() ? "" : folder + "\\slp.reg";
}

}  // namespace slp
