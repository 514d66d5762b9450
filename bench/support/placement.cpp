#include "bench/support/placement.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace bench {
namespace {

constexpr pid_t kThisThread = 0;

cpu_set_t AllowedProcessors() {
  cpu_set_t allowed{};
  if (::sched_getaffinity(kThisThread, sizeof allowed, &allowed) != 0) {
    throw std::system_error(errno, std::generic_category(), "sched_getaffinity");
  }
  return allowed;
}

void Put(pid_t process, int processor) {
  cpu_set_t only{};
  CPU_SET(processor, &only);
  if (::sched_setaffinity(process, sizeof only, &only) != 0) {
    throw std::system_error(errno, std::generic_category(), "sched_setaffinity");
  }
}

}  // namespace

std::vector<int> Processors() {
  const cpu_set_t allowed = AllowedProcessors();
  std::vector<int> processors;
  for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
    if (CPU_ISSET(processor, &allowed)) {
      processors.push_back(processor);
    }
  }
  return processors;
}

Placement::Placement(int own_processor, std::vector<pid_t> others, int their_processor)
    : before_(AllowedProcessors()), others_(std::move(others)) {
  Put(kThisThread, own_processor);
  for (const pid_t other : others_) {
    Put(other, their_processor);
  }
}

Placement::~Placement() {
  ::sched_setaffinity(kThisThread, sizeof before_, &before_);
  for (const pid_t other : others_) {
    ::sched_setaffinity(other, sizeof before_, &before_);
  }
}

}  // namespace bench
