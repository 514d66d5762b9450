// Folders of a file name. Any thread may call these; none throws for what the file system says.
#pragma once

#include <string>

namespace kelsd {

/// The folder part of `file_name`; empty when it has none.
std::string FolderOf(const std::string& file_name);

/// Creates `folder` with every missing folder above it. One that exists, and the empty name, is a success.
[[nodiscard]] bool CreateMissingFolders(const std::string& folder);

}  // namespace kelsd
