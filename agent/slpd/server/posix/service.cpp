#include "slpd/server/service.h"

#include <iostream>

namespace slp {

ExitStatus PerformServiceVerb(const CommandLine&) {
  std::cerr << "slpd: install, uninstall and run are for Windows, where slpd is a service; here slpd without "
               "a verb "
               "is all that a process manager has to start\n";
  return ExitStatus::kUsage;
}

}  // namespace slp
