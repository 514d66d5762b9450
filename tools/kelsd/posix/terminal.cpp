#include "terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

namespace kelsd_tool {

std::optional<int> OutputWidth() {
  if (isatty(STDOUT_FILENO) == 0) {
    return std::nullopt;
  }
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
    return 80;
  }
  return size.ws_col;
}

bool ErrorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

// Terminals take UTF-8, or what the locale says, which is not the tool's to change.
Utf8Output::Utf8Output() = default;
Utf8Output::~Utf8Output() = default;

void SetEnvironment(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

}  // namespace kelsd_tool
