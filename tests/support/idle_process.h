// A process that does nothing until it is ended, and has no file open that this one opens later. One thread
// at a time.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace kelsd::support {

class IdleProcess {
 public:
  IdleProcess() : pid_(fork()) {
    if (pid_ == 0) {
      alarm(60);
      for (;;) {
        pause();
      }
    }
  }
  ~IdleProcess() {
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
  }
  IdleProcess(const IdleProcess&) = delete;
  IdleProcess& operator=(const IdleProcess&) = delete;

  pid_t pid() const { return pid_; }

  /// Whether nobody has ended it.
  bool Lives() const { return waitpid(pid_, nullptr, WNOHANG) == 0; }

 private:
  const pid_t pid_;
};

}  // namespace kelsd::support
