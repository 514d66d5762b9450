#include "bench/end_to_end/bench_daemon.h"

#include <cstdlib>
#include <stdexcept>

namespace bench {

BenchDaemon::BenchDaemon() {
  if (!process_.Running()) {
    throw std::runtime_error("slpd did not start:\n" + process_.Log());
  }
  if (::setenv("OpenSLPConfig", process_.configuration_file().c_str(), 1) != 0) {
    throw std::runtime_error("the environment has no room for OpenSLPConfig");
  }
}

}  // namespace bench
