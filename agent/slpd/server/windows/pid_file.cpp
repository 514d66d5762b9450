#include "slpd/server/pid_file.h"

#include <windows.h>

#include <chrono>
#include <system_error>
#include <thread>

namespace slp {
namespace {

constexpr int kLockTries = 20;
constexpr std::chrono::milliseconds kLockPause{10};
// Locks keep others from reading the locked bytes, so the lock lies far behind the content.
constexpr DWORD kLockOffset = 0x40000000;

std::string LastError() {
  return std::system_category().message(static_cast<int>(::GetLastError()));
}

}  // namespace

struct PidFile::Handle {
  explicit Handle(HANDLE opened) : file(opened) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { ::CloseHandle(file); }

  bool Empty() const {
    return ::SetFilePointer(file, 0, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER && ::SetEndOfFile(file);
  }

  HANDLE file;
};

PidFile::PidFile() = default;

PidFile::~PidFile() {
  if (handle_) {
    handle_->Empty();
  }
}

PidFile::Outcome PidFile::Lock(const std::string& path, std::string& problem) {
  const HANDLE file =
      ::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    problem = "cannot open the pid file " + path + ": " + LastError();
    return Outcome::kFailed;
  }
  auto handle = std::make_unique<Handle>(file);
  for (int tries = 0;; ++tries) {
    OVERLAPPED range{};
    range.Offset = kLockOffset;
    if (::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &range)) {
      break;
    }
    if (tries == kLockTries) {
      problem = "another slpd runs already: it holds the pid file " + path;
      return Outcome::kHeld;
    }
    std::this_thread::sleep_for(kLockPause);
  }
  if (!handle->Empty()) {
    problem = "cannot write the pid file " + path + ": " + LastError();
    return Outcome::kFailed;
  }
  handle_ = std::move(handle);
  return Outcome::kLocked;
}

bool PidFile::Announce(std::int64_t start_seconds) {
  const std::string content =
      std::to_string(::GetCurrentProcessId()) + " " + std::to_string(start_seconds) + "\n";
  DWORD written = 0;
  return handle_ && ::SetFilePointer(handle_->file, 0, nullptr, FILE_BEGIN) != INVALID_SET_FILE_POINTER &&
         ::WriteFile(handle_->file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
         written == content.size();
}

}  // namespace slp
