#include "platform/posix/pid_file_probe.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <system_error>

namespace kelsd::platform {
namespace {

// "PID START\n"; anything else, as while the daemon still starts, leaves `state` without a process id.
void ParseContent(const char* begin, const char* end, PidFileState& state) {
  pid_t pid = 0;
  std::int64_t start = 0;
  const auto first = std::from_chars(begin, end, pid);
  if (first.ec != std::errc() || pid <= 0 || first.ptr == end || *first.ptr != ' ') {
    return;
  }
  const auto second = std::from_chars(first.ptr + 1, end, start);
  if (second.ec != std::errc() || second.ptr == end || *second.ptr != '\n') {
    return;
  }
  state.pid = pid;
  state.start_seconds = start;
}

// 0, or what kept the file from being locked.
int TryToLock(int descriptor) {
  // Shared, so that two who look do not take each other for the daemon.
  while (flock(descriptor, LOCK_SH | LOCK_NB) != 0) {
    if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// Whether the system says that the process doesn't have the file open. A daemon that was killed leaves its
// number in the file, which a stranger may have by now, and anybody who may read the file can lock it.
bool IsKnownToLackFile(pid_t pid, int file) {
  struct stat wanted {};
  const auto close_folder = [](DIR* folder) { closedir(folder); };
  const std::unique_ptr<DIR, decltype(close_folder)> folder(
      opendir(("/proc/" + std::to_string(pid) + "/fd").c_str()), close_folder);
  if (!folder || fstat(file, &wanted) != 0) {
    return false;
  }
  errno = 0;
  for (const dirent* entry = readdir(folder.get()); entry != nullptr; entry = readdir(folder.get())) {
    struct stat found {};
    if (fstatat(dirfd(folder.get()), &entry->d_name[0], &found, 0) != 0) {
      if (errno == ENOENT) {
        errno = 0;  // closed a moment ago
        continue;
      }
      return false;
    }
    if (found.st_dev == wanted.st_dev && found.st_ino == wanted.st_ino) {
      return false;
    }
  }
  return errno == 0;
}

std::string Problem(const std::string& name, int error) {
  return name + ": " + std::generic_category().message(error);
}

}  // namespace

bool ProbePidFile(const std::string& name, PidFileState& state, std::string& problem) {
  state = PidFileState();
  // Without waiting for a writer, should somebody have put a pipe there.
  const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) {
    const int error = errno;
    problem = Problem(name, error);
    return error == ENOENT;
  }
  const int error = TryToLock(descriptor);
  if (error == EWOULDBLOCK) {
    state.held = true;
    std::array<char, 64> content{};
    const ssize_t got = pread(descriptor, content.data(), content.size(), 0);
    if (got > 0) {
      ParseContent(content.data(), content.data() + got, state);
    }
    if (state.pid != 0 && IsKnownToLackFile(state.pid, descriptor)) {
      state.pid = 0;
      state.start_seconds = 0;
    }
  }
  close(descriptor);
  if (error != 0 && error != EWOULDBLOCK) {
    problem = Problem(name, error);
    return false;
  }
  return true;
}

}  // namespace kelsd::platform
