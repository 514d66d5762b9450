#include "properties/file_stamp.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace slp {
namespace {

// The coarsest file system counts in two seconds.
constexpr std::chrono::seconds kRest{3};

std::chrono::nanoseconds SinceEpoch(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

// Nobody can set back the time of the last change of any kind, as one can that of the last writing; but a
// file system may keep the latter alone.
std::optional<FileStamp> StampOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    return errno == ENOENT ? std::optional(FileStamp{{}, true}) : std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  const std::chrono::nanoseconds written = SinceEpoch(status.st_mtim);
  const std::chrono::nanoseconds changed = SinceEpoch(status.st_ctim);
  const std::chrono::nanoseconds now = std::chrono::system_clock::now().time_since_epoch();
  return FileStamp{{static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
                    status.st_size, written.count(), changed.count()},
                   now - std::max(written, changed) >= kRest};
}

}  // namespace slp
