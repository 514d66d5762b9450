// Where the system keeps configuration files. Handed in, so that a test can let the system know no such
// folder.
#pragma once

#include <optional>
#include <string>

namespace kelsd::platform {

/// Any thread may call it.
class KnownFolders {
 public:
  KnownFolders() = default;
  KnownFolders(const KnownFolders&) = delete;
  KnownFolders& operator=(const KnownFolders&) = delete;
  virtual ~KnownFolders() = default;

  /// The folder of the data that all users share; none when the system does not say.
  virtual std::optional<std::string> CommonData() = 0;
  /// The system's own folder; none when the system does not say.
  virtual std::optional<std::string> System() = 0;
};

/// What this system says; never destroyed.
KnownFolders& SystemKnownFolders();

/// What stands for a folder that the system does not know.
const char* FallbackCommonData();
const char* FallbackSystem();

/// The two files within these folders, with their leading separators: the one that "OpenSLPConfig" is
/// proposed to name, and the main configuration file.
const char* EnvironmentConfigFileIn();
const char* MainConfigFileIn();

}  // namespace kelsd::platform
