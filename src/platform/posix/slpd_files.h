// Where the daemon's program, pid file and log are on this host. Any thread.
#pragma once

#include <string>

namespace kelsd::platform {

/// What KELSD_SLPD_PIDFILE says; else /run/slpd.pid for the administrator, slpd.pid in XDG_RUNTIME_DIR for
/// everybody else. Empty when neither gives a place.
std::string SlpdPidFile();

/// What KELSD_SLPD says, else the slpd installed with this library. Empty when there is none.
std::string SlpdProgram();

/// The log of a daemon that this library starts: /var/log/slpd.log, or beside a pid file elsewhere.
std::string SlpdLogFile(const std::string& pid_file);

}  // namespace kelsd::platform
