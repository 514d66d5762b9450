#include "platform/file_system.h"

#include <direct.h>
#include <windows.h>

namespace kelsd::platform {
namespace {

bool Attributes(const std::string& name, WIN32_FILE_ATTRIBUTE_DATA& data) {
  return GetFileAttributesExA(name.c_str(), GetFileExInfoStandard, &data) != 0;
}

bool IsFolder(const WIN32_FILE_ATTRIBUTE_DATA& data) {
  return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

bool FileExists(const std::string& name) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  return Attributes(name, data) && !IsFolder(data);
}

bool FolderExists(const std::string& name) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  return Attributes(name, data) && IsFolder(data);
}

bool CreateFolder(const std::string& name) {
  return _mkdir(name.c_str()) == 0;
}

bool CreateEmptyFile(const std::string& name) {
  const HANDLE handle = CreateFileA(name.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  return handle != INVALID_HANDLE_VALUE && CloseHandle(handle) != 0;
}

const char* PathSeparators() {
  return "\\/";
}

}  // namespace kelsd::platform
