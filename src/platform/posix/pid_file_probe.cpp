#include "platform/posix/pid_file_probe.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
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

std::string Problem(const std::string& name, int error) {
  return name + ": " + std::generic_category().message(error);
}

}  // namespace

bool ProbePidFile(const std::string& name, PidFileState& state, std::string& problem) {
  state = PidFileState();
  const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
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
  }
  close(descriptor);
  if (error != 0 && error != EWOULDBLOCK) {
    problem = Problem(name, error);
    return false;
  }
  return true;
}

}  // namespace kelsd::platform
