#include "slpd/server/log_file.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace slp {

std::unique_ptr<std::ostream> OpenLogFile(const std::string& path, bool append, std::string& problem) {
  errno = 0;
  auto file = std::make_unique<std::ofstream>(path, append ? std::ios::app : std::ios::trunc);
  if (!*file) {
    problem = "cannot open the log file " + path + ": " + std::generic_category().message(errno);
    return nullptr;
  }
  return file;
}

}  // namespace slp
