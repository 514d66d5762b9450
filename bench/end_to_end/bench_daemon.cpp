#include "bench/end_to_end/bench_daemon.h"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

namespace bench {
namespace {

// A configuration file that has just been written is read again by each first handle of a process, since it
// may still be being written; later only when it has changed. Those of a site have been there for long.
constexpr std::chrono::seconds kRestOfConfiguration{4};

void SetVariable(const char* name, const std::string& value) {
  if (::setenv(name, value.c_str(), 1) != 0) {
    throw std::runtime_error(std::string("the environment has no room for ") + name);
  }
}

}  // namespace

BenchDaemon::BenchDaemon(std::optional<int> running) {
  if (running) {
    process_id_ = *running;
    return;
  }
  started_.emplace();
  if (!started_->Running()) {
    throw std::runtime_error("slpd did not start:\n" + started_->Log());
  }
  SetVariable("OpenSLPConfig", started_->configuration_file());
  SetVariable("KELSD_SLPD_PIDFILE", started_->pid_file());
  process_id_ = started_->process_id();
  std::this_thread::sleep_for(kRestOfConfiguration);
}

}  // namespace bench
