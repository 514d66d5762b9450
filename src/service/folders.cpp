#include "service/folders.h"

#include "platform/file_system.h"

namespace kelsd {

std::string FolderOf(const std::string& file_name) {
  const std::size_t separator = file_name.find_last_of(platform::PathSeparators());
  if (separator == std::string::npos) {
    return {};
  }
  const std::size_t end = file_name.find_last_not_of(platform::PathSeparators(), separator);
  // Nothing but separators is the root itself.
  return end == std::string::npos ? file_name.substr(0, separator + 1) : file_name.substr(0, end + 1);
}

bool CreateMissingFolders(const std::string& folder) {
  if (folder.empty() || platform::FolderExists(folder)) {
    return true;
  }
  const std::string parent = FolderOf(folder);
  if (parent != folder && !CreateMissingFolders(parent)) {
    return false;
  }
  // Somebody else may have created it meanwhile.
  return platform::CreateFolder(folder) || platform::FolderExists(folder);
}

}  // namespace kelsd
