#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>

namespace kelsd::platform {
namespace {

using std::chrono::steady_clock;

TEST(SystemClock, TellsTheSecondsSince1970) {
  const std::time_t before = std::time(nullptr);
  const std::int64_t now = SystemClock().Now();
  const std::time_t after = std::time(nullptr);
  // A system's sources of time may differ by the time between two of their ticks.
  EXPECT_GE(now, before - 1);
  EXPECT_LE(now, after + 1);
}

TEST(SystemClock, SleepsAtLeastAsLongAsAskedAndCountsMilliseconds) {
  constexpr std::uint32_t kAsked = 60;
  // A tick of the counter of some systems.
  constexpr std::uint32_t kTick = 16;
  const auto begin = steady_clock::now();
  const std::uint32_t begin_count = SystemClock().TickCount();
  // What is tested is a sleep.
  SystemClock().Sleep(kAsked);
  const std::uint32_t counted = SystemClock().TickCount() - begin_count;
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - begin);
  EXPECT_GE(took.count() + kTick, kAsked);
  EXPECT_GE(counted + kTick, kAsked);
  EXPECT_LE(counted, static_cast<std::uint32_t>(took.count()) + kTick);
}

}  // namespace
}  // namespace kelsd::platform
