#include "slpd/server/signals.h"

#include <array>
#include <csignal>

namespace slp {
namespace {

constexpr std::array<int, 2> kStop{SIGTERM, SIGINT};
constexpr std::array<int, 1> kReload{SIGHUP};

}  // namespace

std::span<const int> StopSignals() {
  return kStop;
}

std::span<const int> ReloadSignals() {
  return kReload;
}

void IgnoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace slp
