#include "platform/clock.h"

#include <chrono>
#include <thread>

namespace kelsd::platform {
namespace {

class PosixClock : public Clock {
 public:
  std::int64_t Now() override {
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(since_1970).count();
  }

  std::uint32_t TickCount() override {
    const auto running = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(running).count());
  }

  void Sleep(std::uint32_t milliseconds) override {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }
};

}  // namespace

Clock& SystemClock() {
  static Clock& clock = *new PosixClock;
  return clock;
}

}  // namespace kelsd::platform
