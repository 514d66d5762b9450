// Nothing ticks, and nothing stays, of a timer for which there was not enough memory.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <thread>

#include "platform/periodic_timer.h"
#include "support/allocation_failure.h"

namespace kelsd::platform {
namespace {

TEST(PeriodicTimerMemory, SurvivesEveryFailedAllocation) {
  const auto ticks = std::make_shared<std::atomic<int>>(0);
  const auto start = [&] {
    return SystemTimers().Start(1, {.tick = [ticks] { ++*ticks; }, .after_tick = [] {}});
  };
  FailEachAllocation(
      [&]() -> bool {
        try {
          return start() != nullptr;
        } catch (const std::bad_alloc&) {
          return false;
        }
      },
      [&](bool started) {
        EXPECT_FALSE(started);
        EXPECT_EQ(ticks.use_count(), 1);
        EXPECT_EQ(*ticks, 0);
      });
  const auto timer = start();
  ASSERT_NE(timer, nullptr);
  // Ticks of the system's own timer are waited for; a busy machine gets plenty of time.
  for (int i = 0; i < 3000 && *ticks == 0; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_GT(*ticks, 0);
}

}  // namespace
}  // namespace kelsd::platform
