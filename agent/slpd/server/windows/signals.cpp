#include "slpd/server/signals.h"

#include <array>
#include <csignal>

namespace slp {
namespace {

constexpr std::array<int, 3> kStop{SIGTERM, SIGINT, SIGBREAK};

}  // namespace

std::span<const int> StopSignals() {
  return kStop;
}

std::span<const int> ReloadSignals() {
  return {};
}

void IgnoreBrokenPipes() {}

}  // namespace slp
