// The service "slpd" as the service control manager of this system holds it. One thread; the system has only
// one service of this name, so that tests that use it run one after the other.
#pragma once

#include <windows.h>

#include <string>

namespace kelsd::support {

/// Enters the service with the program and arguments of `command_line`. Throws std::runtime_error when that
/// fails, as all of these do.
void CreateSlpdService(const std::string& command_line);

/// Ends the service's process and removes the service; nothing to do when there is none.
void RemoveSlpdService();

SERVICE_STATUS_PROCESS SlpdServiceStatus();

/// Asks for the start and does not wait for it.
void StartSlpdService();

/// Whether the service took the control; what the system says about it otherwise is the thread's last error.
bool ControlSlpdService(DWORD control);

/// Ends the service's process at once and waits for that.
void TerminateSlpdService();

/// What the system says about an error, as it stands in the library's results.
std::string SystemMessage(DWORD code);

}  // namespace kelsd::support
