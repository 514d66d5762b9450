// Starts the daemon as a program does whose folder decides where the daemon is looked for: prints the program
// that it would start, and what the system says about a start.
#include <iostream>

#include "platform/posix/slpd_files.h"
#include "platform/service_manager.h"

int main() {
  namespace access = kelsd::platform::service_access;
  kelsd::platform::ServiceManager& services = kelsd::platform::SystemServices();
  const auto manager = services.OpenManager(access::kManagerReadControl);
  const auto service = services.OpenNamed(manager, "slpd", access::kQueryStatus | access::kStart);
  std::cout << kelsd::platform::SlpdProgram() << "\n";
  std::cout << (services.RequestStart(service) ? "started" : services.LastErrorText()) << "\n";
  services.CloseManaged(service);
  services.CloseManaged(manager);
  return 0;
}
