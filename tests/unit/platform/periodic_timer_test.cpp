#include "platform/periodic_timer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "support/fake_platform/fake_timers.h"
#include "support/latch.h"
#include "support/wait_until.h"

namespace kelsd::platform {
namespace {

using support::WaitUntil;

// Long enough for what may go on to have gone on; a timer that is wrongly waited for, or not, fails the test.
constexpr std::chrono::milliseconds kGrace{50};

TEST(PeriodicTimer, TicksAgainAndAgainOnThreadsOfItsOwn) {
  struct Seen {  // by callbacks that may still run when the test has ended
    std::atomic<int> ticks = 0;
    std::atomic<bool> same_thread = false;
    std::atomic<bool> in_order = true;
  };
  const auto seen = std::make_shared<Seen>();
  auto timer = SystemTimers().Start(1, {.tick =
                                            [seen, self = std::this_thread::get_id()] {
                                              ++seen->ticks;
                                              if (std::this_thread::get_id() == self) {
                                                seen->same_thread = true;
                                              }
                                            },
                                        .after_tick =
                                            [seen] {
                                              if (seen->ticks == 0) {
                                                seen->in_order = false;
                                              }
                                            }});
  ASSERT_NE(timer, nullptr);
  EXPECT_TRUE(WaitUntil([&] { return seen->ticks >= 20; }));
  timer.reset();
  const int at_deletion = seen->ticks;
  std::this_thread::sleep_for(kGrace);
  EXPECT_EQ(seen->ticks, at_deletion);
  EXPECT_FALSE(seen->same_thread);
  EXPECT_TRUE(seen->in_order);
}

TEST(PeriodicTimer, TheFirstTickComesAfterOnePeriod) {
  std::atomic<int> ticks = 0;
  const auto timer = SystemTimers().Start(60000, {.tick = [&] { ++ticks; }, .after_tick = [] {}});
  ASSERT_NE(timer, nullptr);
  std::this_thread::sleep_for(kGrace);
  EXPECT_EQ(ticks, 0);
}

/// What callbacks use that may still run when the test has ended.
struct Outliving {
  support::Latch entered{1};
  support::Latch leave{1};
  support::Latch left{1};
  std::atomic<int> ticks = 0;
  std::atomic<bool> first = true;
  std::mutex mutex;
  std::unique_ptr<PeriodicTimer> timer;
};

TEST(PeriodicTimer, TicksGoOnWhileAnEarlierOneIsBusy) {
  const auto shared = std::make_shared<Outliving>();
  auto timer = SystemTimers().Start(1, {.tick = [shared] { ++shared->ticks; },
                                        .after_tick =
                                            [shared] {
                                              if (shared->first.exchange(false)) {
                                                shared->leave.Wait();
                                              }
                                            }});
  ASSERT_NE(timer, nullptr);
  EXPECT_TRUE(WaitUntil([&] { return shared->ticks >= 5; }));
  shared->leave.CountDown();
}

// What deleting waits for, and what not: on the system's timers, and on those that tests drive.
class TimerDeletion : public testing::TestWithParam<bool> {
 protected:
  std::unique_ptr<PeriodicTimer> Start(TimerCallbacks callbacks) {
    if (!IsFake()) {
      return SystemTimers().Start(1, std::move(callbacks));
    }
    auto timer = fake_.Start(1, std::move(callbacks));
    ticking_ = std::jthread([this](const std::stop_token& stop) {
      while (!stop.stop_requested()) {
        fake_.Tick();
        std::this_thread::yield();
      }
    });
    return timer;
  }
  static bool IsFake() { return GetParam(); }

  FakeTimers fake_;
  std::jthread ticking_;
};

TEST_P(TimerDeletion, WaitsForARunningTick) {
  support::Latch in_tick(1);
  support::Latch leave(1);
  std::atomic<bool> first = true;
  std::atomic<bool> ended = false;
  auto timer = Start({.tick =
                          [&] {
                            if (first.exchange(false)) {
                              in_tick.CountDown();
                              leave.Wait();
                              ended = true;
                            }
                          },
                      .after_tick = [] {}});
  in_tick.Wait();
  std::future<void> deletion = std::async(std::launch::async, [&] { timer.reset(); });
  EXPECT_EQ(deletion.wait_for(kGrace), std::future_status::timeout);
  leave.CountDown();
  deletion.get();
  EXPECT_TRUE(ended);
}

TEST_P(TimerDeletion, DoesNotWaitForWhatFollowsATick) {
  const auto shared = std::make_shared<Outliving>();
  auto timer = Start({.tick = [] {},
                      .after_tick =
                          [shared] {
                            if (shared->first.exchange(false)) {
                              shared->entered.CountDown();
                              shared->leave.Wait();
                              shared->left.CountDown();
                            }
                          }});
  shared->entered.Wait();
  timer.reset();
  shared->leave.CountDown();
  shared->left.Wait();
}

TEST_P(TimerDeletion, FromWithinTheTimersThreadWaitsForNothing) {
  for (const bool in_tick : {true, false}) {
    const auto shared = std::make_shared<Outliving>();
    const auto once = [shared] {
      if (shared->first.exchange(false)) {
        const std::lock_guard guard(shared->mutex);
        shared->timer.reset();
        shared->left.CountDown();
      }
    };
    {
      const std::lock_guard guard(shared->mutex);
      shared->timer = Start(
          {.tick = [=] { in_tick ? once() : void(); }, .after_tick = [=] { in_tick ? void() : once(); }});
    }
    shared->left.Wait();
    ticking_ = std::jthread();
  }
}

INSTANTIATE_TEST_SUITE_P(SystemAndFake, TimerDeletion, testing::Bool(),
                         [](const auto& row) { return row.param ? "Fake" : "System"; });

}  // namespace
}  // namespace kelsd::platform
