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

}  // namespace

bool ProbePidFile(const std::string& name, PidFileState& state, std::string& problem) {
  state = PidFileState();
  const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    problem = name + ": " + std::generic_category().message(errno);
    return errno == ENOENT;
  }
  // Shared, so that two who look do not take each other for the daemon.
  if (flock(descriptor, LOCK_SH | LOCK_NB) != 0) {
    state.held = true;
    std::array<char, 64> content{};
    const ssize_t got = pread(descriptor, content.data(), content.size(), 0);
    if (got > 0) {
      ParseContent(content.data(), content.data() + got, state);
    }
  }
  close(descriptor);
  return true;
}

}  // namespace kelsd::platform
