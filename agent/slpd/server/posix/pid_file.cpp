#include "slpd/server/pid_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include "slpd/server/posix/written_file.h"

namespace slp {
namespace {

constexpr int kLockTries = 20;
constexpr std::chrono::milliseconds kLockPause{10};

std::string LastError() {
  return std::generic_category().message(errno);
}

}  // namespace

struct PidFile::Handle {
  explicit Handle(int opened) : descriptor(opened) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { ::close(descriptor); }

  int descriptor;
};

PidFile::PidFile() = default;

PidFile::~PidFile() {
  if (handle_ && ::ftruncate(handle_->descriptor, 0) != 0) {
    // The content is then stale, which does no harm: only the lock says whether a daemon runs.
    return;
  }
}

PidFile::Outcome PidFile::Lock(const std::string& path, std::string& problem) {
  std::string reason;
  const int descriptor = OpenWrittenFile(path, O_RDWR, 0644, WrittenFile::kRegular, reason);
  if (descriptor < 0) {
    problem = "cannot open the pid file " + path + ": " + reason;
    return Outcome::kFailed;
  }
  auto handle = std::make_unique<Handle>(descriptor);
  int tries = 0;
  while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    if (errno == EINTR) {
      continue;
    }
    if (errno != EWOULDBLOCK) {
      problem = "cannot lock the pid file " + path + ": " + LastError();
      return Outcome::kFailed;
    }
    if (++tries == kLockTries) {
      problem = "another slpd runs already: it holds the pid file " + path;
      return Outcome::kHeld;
    }
    std::this_thread::sleep_for(kLockPause);
  }
  if (::ftruncate(descriptor, 0) != 0) {
    problem = "cannot write the pid file " + path + ": " + LastError();
    return Outcome::kFailed;
  }
  handle_ = std::move(handle);
  return Outcome::kLocked;
}

bool PidFile::Announce(std::int64_t start_seconds) {
  const std::string content = std::to_string(::getpid()) + " " + std::to_string(start_seconds) + "\n";
  return handle_ && ::pwrite(handle_->descriptor, content.data(), content.size(), 0) ==
                        static_cast<ssize_t>(content.size());
}

}  // namespace slp
