#include "platform/known_folders.h"

namespace kelsd::platform {
namespace {

class PosixFolders : public KnownFolders {
 public:
  std::optional<std::string> CommonData() override { return "/etc"; }
  std::optional<std::string> System() override { return "/etc"; }
};

}  // namespace

KnownFolders& SystemKnownFolders() {
  static KnownFolders& folders = *new PosixFolders;
  return folders;
}

const char* FallbackCommonData() {
  return "/etc";
}

const char* FallbackSystem() {
  return "/etc";
}

const char* EnvironmentConfigFileIn() {
  return "/slp/slp.conf";
}

const char* MainConfigFileIn() {
  return "/slp.conf";
}

}  // namespace kelsd::platform
