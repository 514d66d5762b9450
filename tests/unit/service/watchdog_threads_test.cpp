// The watchdog under many threads: whatever a callback does, it never leads to a deadlock. A deadlock runs
// into the time limit of the test.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "service_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;

constexpr int kUrls = 8;

std::string Url(int number) {
  return "service:x://10.0.0.1:" + std::to_string(1000 + number % kUrls);
}

thread_local bool registers = false;

class WatchdogThreads : public ServiceFixture {
 protected:
  WatchdogThreads() {
    // What the application registers is taken, but every renewal is refused.
    scripted_slp::Decide(Function::kReg, [](const std::string&) {
      return registers ? std::nullopt : std::optional(scripted_slp::Returns(SLP_NETWORK_ERROR));
    });
    // Everything is due on every pass: the daemon is younger than all registrations.
    services.SetStartTime(FakeClock::kStart * 1000);
  }

  static void Register(CKelSLPServiceImpl& tested, int number) {
    registers = true;
    EXPECT_THAT(tested.RegisterService(Url(number), 60, {}, {}), SameResult(kSuccess));
    registers = false;
  }

  /// What the application does in its callback: in turn all that could be waited for.
  void React(CKelSLPServiceImpl& tested, const std::string& url, int turn) {
    switch (turn % 6) {
      case 0:
        Register(tested, turn);
        break;
      case 1:
        EXPECT_THAT(tested.DeregisterService(url), SameResult(kSuccess));
        break;
      case 2:
        EXPECT_THAT(tested.SetRegistrationCheckInterval(1 + turn / 6 % 2), SameResult(kSuccess));
        break;
      case 3:
        // The last service included.
        for (int number = 0; number < kUrls; ++number) {
          EXPECT_THAT(tested.DeregisterService(Url(number)), SameResult(kSuccess));
        }
        break;
      case 4:
        std::async(std::launch::async, [&] {
          Register(tested, turn);
          EXPECT_THAT(tested.DeregisterService(Url(turn)), SameResult(kSuccess));
        }).get();
        break;
      default:
        EXPECT_THAT(tested.RestartSLPD(), SameResult(kSuccess));
        services.SetStartTime(FakeClock::kStart * 1000);
        break;
    }
  }

  /// Registers and deregisters on two threads until the callback has been called `calls` times; `tick` runs
  /// on `tick_threads` more.
  void Drive(CKelSLPServiceImpl& tested, int calls, int tick_threads, const std::function<void()>& tick) {
    std::atomic<int> called = 0;
    auto in_callbacks = std::make_shared<int>();
    tested.SetReRegistrationFailedCallback([&, in_callbacks](const std::string& url, const SResult&) {
      const int turn = called++;
      if (turn < calls) {
        React(tested, url, turn);
      }
    });
    {
      std::vector<std::jthread> threads;
      for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&, i] {
          for (int round = 0; called < calls; ++round) {
            const int before = called;
            for (int number = i; number < kUrls; number += 2) {
              Register(tested, number);
            }
            EXPECT_THAT(tested.DeregisterService(Url(round)), SameResult(kSuccess));
            if (round % 16 == i) {
              EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
              scripted_slp::ForgetCalls();
              services.ForgetCalls();
            }
            // A registration begins counting failures anew: passes need the time to come to five, however
            // long a busy machine makes them wait.
            while (called == before && called < calls && !tested.GetRegisteredServices().empty()) {
              std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
          }
        });
      }
      for (int i = 0; i < tick_threads; ++i) {
        threads.emplace_back([&] {
          while (called < calls) {
            tick();
            std::this_thread::yield();
          }
        });
      }
    }
    for (int number = 0; number < kUrls; ++number) {
      EXPECT_THAT(tested.DeregisterService(Url(number)), SameResult(kSuccess));
    }
    // A call that is under way goes on; this one keeps what it refers to.
    tested.SetReRegistrationFailedCallback(nullptr);
    while (in_callbacks.use_count() > 1) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_GE(called, calls);
  }
};

TEST_F(WatchdogThreads, ThousandsOfCallbacksOfTicksOnSeveralThreads) {
  Drive(agent, 2000, 3, [this] { timers.Tick(); });
  EXPECT_EQ(timers.Live(), 0U);
}

TEST_F(WatchdogThreads, ThousandsOfCallbacksOfRealTicksOfAMillisecond) {
  CKelSLPServiceImpl real{{services, clock, platform::SystemTimers(), folders}};
  EXPECT_THAT(real.SetRegistrationCheckInterval(1), SameResult(kSuccess));
  Drive(real, 2000, 0, [] {});
}

// A timer that is made and deleted again and again, each time perhaps with a tick under way.
TEST_F(WatchdogThreads, RealTimersThatComeAndGo) {
  CKelSLPServiceImpl real{{services, clock, platform::SystemTimers(), folders}};
  EXPECT_THAT(real.SetRegistrationCheckInterval(1), SameResult(kSuccess));
  for (int i = 0; i < 300; ++i) {
    Register(real, i);
    if (i % 3 == 0) {
      EXPECT_THAT(real.SetRegistrationCheckInterval(2 - i % 2), SameResult(kSuccess));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(1500));
    EXPECT_THAT(real.DeregisterService(Url(i)), SameResult(kSuccess));
  }
}

}  // namespace
}  // namespace kelsd
