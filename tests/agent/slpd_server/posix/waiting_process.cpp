#include "agent/slpd_server/waiting_process.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace slp {

struct WaitingProcess::State {
  pid_t id = 0;
  bool reaped = false;
};

WaitingProcess::WaitingProcess(For) : state_(std::make_unique<State>()) {
  state_->id = ::fork();
  if (state_->id == 0) {
    for (;;) {
      ::pause();
    }
  }
}

WaitingProcess::~WaitingProcess() {
  if (!state_->reaped) {
    Kill();
  }
  Reap();
}

void WaitingProcess::Kill() const {
  ::kill(state_->id, SIGKILL);
  siginfo_t how{};
  ::waitid(P_PID, static_cast<id_t>(state_->id), &how, WEXITED | WNOWAIT);
}

void WaitingProcess::Reap() {
  if (!state_->reaped) {
    ::waitpid(state_->id, nullptr, 0);
    state_->reaped = true;
  }
}

std::uint32_t WaitingProcess::id() const {
  return static_cast<std::uint32_t>(state_->id);
}

}  // namespace slp
