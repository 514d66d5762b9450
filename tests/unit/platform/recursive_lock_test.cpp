#include "platform/recursive_lock.h"

#include <gtest/gtest.h>

#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace kelsd::platform {
namespace {

bool AnotherThreadGets(RecursiveLock& lock) {
  return std::async(std::launch::async,
                    [&] {
                      const std::unique_lock guard(lock, std::try_to_lock);
                      return guard.owns_lock();
                    })
      .get();
}

TEST(RecursiveLock, IsFreeWhenItWasLeftAsOftenAsItWasEntered) {
  RecursiveLock lock;
  lock.lock();
  EXPECT_TRUE(lock.try_lock());
  lock.lock();
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(AnotherThreadGets(lock));
    lock.unlock();
  }
  EXPECT_TRUE(AnotherThreadGets(lock));
}

TEST(RecursiveLock, GuardsDataOfManyThreads) {
  RecursiveLock lock;
  constexpr int kThreads = 4;
  constexpr int kRounds = 1000;
  int count = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round) {
          const std::unique_lock outer(lock);
          const std::unique_lock inner(lock);
          ++count;
        }
      });
    }
  }
  EXPECT_EQ(count, kThreads * kRounds);
}

}  // namespace
}  // namespace kelsd::platform
