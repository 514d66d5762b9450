// Folders that a test makes up.
#pragma once

#include <optional>
#include <string>

#include "platform/known_folders.h"

namespace kelsd {

/// One thread at a time.
class FakeFolders : public platform::KnownFolders {
 public:
  std::optional<std::string> CommonData() override { return common_data; }
  std::optional<std::string> System() override { return system; }

  std::optional<std::string> common_data = "COMMON";
  std::optional<std::string> system = "SYSTEM";
};

}  // namespace kelsd
