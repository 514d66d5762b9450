// Where the daemon's files lie when nobody says otherwise. Reads the environment; any thread, as long as none
// changes it.
#pragma once

#include <string>

namespace slp {

/// What KELSD_SLPD_PIDFILE says; else /run/slpd.pid for the administrator, slpd.pid in XDG_RUNTIME_DIR for
/// others. Empty when there is no such place, and on Windows, where the service manager knows the process.
std::string DefaultPidFile();

/// /etc/slp.reg; slp.reg in the folder of Windows.
std::string DefaultRegistrationFile();

}  // namespace slp
