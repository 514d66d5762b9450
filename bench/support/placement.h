// Which processors take part in a measurement. Where the scheduler puts two processes that wake each other
// decides how long a wake-up takes, and it decides anew for every pair: what is compared has to be put in the
// same place. One thread.
#pragma once

#include <sched.h>
#include <sys/types.h>

#include <vector>

namespace bench {

/// The processors that the calling thread may use. Throws std::system_error.
std::vector<int> Processors();

/// While it lives, the calling thread and the main threads of the other processes run on the processors
/// given. Afterwards they may use those again that the calling thread could before.
class Placement {
 public:
  /// Throws std::system_error.
  Placement(int own_processor, std::vector<pid_t> others, int their_processor);
  ~Placement();
  Placement(const Placement&) = delete;
  Placement& operator=(const Placement&) = delete;

 private:
  cpu_set_t before_{};
  std::vector<pid_t> others_;
};

}  // namespace bench
