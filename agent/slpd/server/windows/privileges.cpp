#include "slpd/server/privileges.h"

namespace slp {

// The service manager starts the daemon as the service's account, so that nothing is left to give up.
struct Privileges::Account {};

Privileges::Privileges() = default;

Privileges::~Privileges() = default;

bool Privileges::Prepare(const std::string& user, std::string& problem) {
  if (!user.empty()) {
    problem =
        "--user: on Windows slpd runs as the account of its service, NT AUTHORITY\\LocalService: leave "
        "--user "
        "out, and see slpd install";
  }
  return user.empty();
}

bool Privileges::GiveUp(const FilesInUse&, std::string&) {
  return true;
}

std::vector<std::string> Privileges::Obstacles(const FilesInUse&) const {
  return {};
}

}  // namespace slp
