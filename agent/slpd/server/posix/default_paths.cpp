#include "slpd/server/default_paths.h"

#include <unistd.h>

#include "properties/platform_files.h"

namespace slp {

std::string DefaultPidFile() {
  if (std::string given = EnvironmentVariable("KELSD_SLPD_PIDFILE"); !given.empty()) {
    return given;
  }
  if (::geteuid() == 0) {
    return "/run/slpd.pid";
  }
  const std::string folder = EnvironmentVariable("XDG_RUNTIME_DIR");
  return folder.empty() ? "" : folder + "/slpd.pid";
}

std::string DefaultRegistrationFile() {
  return "/etc/slp.reg";
}

}  // namespace slp
