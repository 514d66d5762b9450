#include "platform/known_folders.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <array>

namespace kelsd::platform {
namespace {

std::optional<std::string> FolderPath(int folder) {
  std::array<char, MAX_PATH> path{};
  if (SHGetFolderPathA(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path.data()) != S_OK) {
    return std::nullopt;
  }
  return path.data();
}

class ShellFolders : public KnownFolders {
 public:
  std::optional<std::string> CommonData() override { return FolderPath(CSIDL_COMMON_APPDATA); }
  std::optional<std::string> System() override { return FolderPath(CSIDL_WINDOWS); }
};

}  // namespace

KnownFolders& SystemKnownFolders() {
  static KnownFolders& folders = *new ShellFolders;
  return folders;
}

const char* FallbackCommonData() {
  return "C:\\Documents and Settings\\All Users\\Application Data";
}

const char* FallbackSystem() {
  return "%windir%";
}

const char* EnvironmentConfigFileIn() {
  return "\\slp\\slp.conf";
}

const char* MainConfigFileIn() {
  return "\\slp.conf";
}

}  // namespace kelsd::platform
