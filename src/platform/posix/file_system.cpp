#include "platform/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelsd::platform {

bool FileExists(const std::string& name) {
  struct stat entry {};
  return stat(name.c_str(), &entry) == 0 && !S_ISDIR(entry.st_mode);
}

bool FolderExists(const std::string& name) {
  struct stat entry {};
  return stat(name.c_str(), &entry) == 0 && S_ISDIR(entry.st_mode);
}

bool CreateFolder(const std::string& name) {
  return mkdir(name.c_str(), 0755) == 0;
}

bool CreateEmptyFile(const std::string& name) {
  const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
  return descriptor >= 0 && close(descriptor) == 0;
}

const char* PathSeparators() {
  return "/";
}

}  // namespace kelsd::platform
