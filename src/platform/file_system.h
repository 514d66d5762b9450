// Files and folders as the configuration file store needs them. Any thread may call these; none throws for
// what the file system says.
#pragma once

#include <string>

namespace kelsd::platform {

/// Whether `name` names an existing entry that is no folder.
bool FileExists(const std::string& name);
bool FolderExists(const std::string& name);

/// Creates one folder; its parent must exist.
[[nodiscard]] bool CreateFolder(const std::string& name);

/// Creates an empty file where there is none; one that exists is left alone.
[[nodiscard]] bool CreateEmptyFile(const std::string& name);

/// The characters that separate the parts of a file name.
const char* PathSeparators();

}  // namespace kelsd::platform
