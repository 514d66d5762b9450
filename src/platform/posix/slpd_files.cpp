#include "platform/posix/slpd_files.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace kelsd::platform {
namespace {

constexpr const char* kSystemPidFile = "/run/slpd.pid";
constexpr const char* kSystemLogFile = "/var/log/slpd.log";

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

// The folder that this library was loaded from.
std::string LibraryFolder() {
  static const int anchor = 0;
  Dl_info info{};
  if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) {
    return {};
  }
  const std::string name = info.dli_fname;
  const auto slash = name.rfind('/');
  return slash == std::string::npos ? "." : name.substr(0, slash);
}

}  // namespace

std::string SlpdPidFile() {
  if (std::string given = Environment("KELSD_SLPD_PIDFILE"); !given.empty()) {
    return given;
  }
  if (geteuid() == 0) {
    return kSystemPidFile;
  }
  const std::string folder = Environment("XDG_RUNTIME_DIR");
  return folder.empty() ? std::string() : folder + "/slpd.pid";
}

std::string SlpdProgram() {
  if (std::string given = Environment("KELSD_SLPD"); !given.empty()) {
    return given;
  }
  const std::string folder = LibraryFolder();
  // A multi-architecture library folder lies one level deeper than a plain one.
  for (const char* place : {"/../sbin/slpd", "/../../sbin/slpd", "/../bin/slpd", "/slpd"}) {
    std::string program = folder + place;
    if (access(program.c_str(), X_OK) == 0) {
      return program;
    }
  }
  return {};
}

std::string SlpdLogFile(const std::string& pid_file) {
  if (pid_file == kSystemPidFile) {
    return kSystemLogFile;
  }
  constexpr std::string_view kEnding = ".pid";
  const std::size_t kept = pid_file.ends_with(kEnding) ? pid_file.size() - kEnding.size() : pid_file.size();
  return pid_file.substr(0, kept) + ".log";
}

}  // namespace kelsd::platform
