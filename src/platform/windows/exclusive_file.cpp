#include "platform/exclusive_file.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <utility>

namespace kelsd::platform {
namespace {

class SharedReadFile : public ExclusiveFile {
 public:
  explicit SharedReadFile(std::string name) : name_(std::move(name)) {}
  SharedReadFile(const SharedReadFile&) = delete;
  SharedReadFile& operator=(const SharedReadFile&) = delete;
  ~SharedReadFile() override {
    if (handle_ != INVALID_HANDLE_VALUE) {
      CloseHandle(handle_);
    }
    if (remove_) {
      RemoveIfEmpty();
    }
  }

  bool Open(bool& created) {
    // With OPEN_ALWAYS a success leaves ERROR_ALREADY_EXISTS as the last error when the file was there.
    SetLastError(ERROR_SUCCESS);
    handle_ = CreateFileA(name_.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) {
      return false;
    }
    created = GetLastError() == ERROR_SUCCESS;
    return true;
  }

  bool Read(std::string& content) override {
    if (SetFilePointer(handle_, 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER) {
      return false;
    }
    std::string text;
    std::array<char, 65536> block;
    for (;;) {
      DWORD got = 0;
      if (ReadFile(handle_, block.data(), static_cast<DWORD>(block.size()), &got, nullptr) == 0) {
        return false;
      }
      if (got == 0) {
        content = std::move(text);
        return true;
      }
      text.append(block.data(), got);
    }
  }

  // 1. Reserve the room that the longer content takes: a full disk is found out before anything is lost.
  // 2. Write from the start, then cut off what is left of a longer old content, then bring it to the disk.
  bool Replace(const std::string& content) override {
    const DWORD before = GetFileSize(handle_, nullptr);
    if (before == INVALID_FILE_SIZE) {
      return false;
    }
    if (content.size() > before && !SetSize(static_cast<LONG>(content.size()))) {
      // The old content stays as it was.
      SetSize(static_cast<LONG>(before));
      return false;
    }
    if (SetFilePointer(handle_, 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER) {
      return false;
    }
    std::size_t at = 0;
    while (at < content.size()) {
      constexpr std::size_t kBlock = 1U << 20U;
      const auto size = static_cast<DWORD>(std::min(kBlock, content.size() - at));
      DWORD put = 0;
      if (WriteFile(handle_, content.data() + at, size, &put, nullptr) == 0 || put == 0) {
        return false;
      }
      at += put;
    }
    return SetEndOfFile(handle_) != 0 && FlushFileBuffers(handle_) != 0;
  }

  void RemoveWhenClosed() override { remove_ = true; }

 private:
  // Another writer may have come since the file was closed: one that is there keeps the file from being
  // opened here, and what one has left behind keeps it from being removed.
  void RemoveIfEmpty() const {
    const HANDLE file = CreateFileA(name_.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
      return;
    }
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size) != 0 && size.QuadPart == 0) {
      FILE_DISPOSITION_INFO disposition{};
      disposition.DeleteFile = TRUE;
      SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof(disposition));
    }
    CloseHandle(file);
  }

  bool SetSize(LONG size) {
    return SetFilePointer(handle_, size, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER &&
           SetEndOfFile(handle_) != 0;
  }

  HANDLE handle_ = INVALID_HANDLE_VALUE;
  const std::string name_;
  bool remove_ = false;
};

}  // namespace

std::unique_ptr<ExclusiveFile> ExclusiveFile::Open(const std::string& name, bool& created) {
  // All memory is taken before the file is opened, so that no handle is lost when there is none.
  auto file = std::make_unique<SharedReadFile>(name);
  return file->Open(created) ? std::move(file) : nullptr;
}

}  // namespace kelsd::platform
