#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace kelsd::platform {
namespace {

using std::chrono::steady_clock;

// A tick of the counter of some systems, in milliseconds.
constexpr std::int64_t kTick = 16;

TEST(SystemClock, TellsTheSecondsSince1970) {
  const std::time_t before = std::time(nullptr);
  const std::int64_t now = SystemClock().Now();
  const std::time_t after = std::time(nullptr);
  // A system's sources of time may differ by the time between two of their ticks.
  EXPECT_GE(now, before - 1);
  EXPECT_LE(now, after + 1);
}

TEST(SystemClock, SleepsAtLeastAsLongAsAsked) {
  constexpr std::uint32_t kAsked = 60;
  const auto begin = steady_clock::now();
  // What is tested is a sleep.
  SystemClock().Sleep(kAsked);
  const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - begin);
  EXPECT_GE(took.count() + kTick, kAsked);
}

// Some systems have another process count, which a busy machine keeps waiting: a count that is late once is
// not in another unit.
TEST(SystemClock, CountsMilliseconds) {
  constexpr int kMostTries = 20;
  const auto counts_right = [] {
    const auto begin = steady_clock::now();
    const std::uint32_t begin_count = SystemClock().TickCount();
    SystemClock().Sleep(60);
    const std::int64_t counted = SystemClock().TickCount() - begin_count;
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - begin);
    return std::abs(counted - took.count()) <= kTick;
  };
  int tries = 1;
  while (!counts_right()) {
    ASSERT_LT(tries++, kMostTries);
  }
}

}  // namespace
}  // namespace kelsd::platform
