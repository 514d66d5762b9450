#include "platform/reader_writer_lock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <vector>

#include "support/latch.h"

namespace kelsd::platform {
namespace {

// Long enough for a thread that may go on to have gone on; a lock that wrongly lets it in fails the test, a
// slow machine never does.
constexpr std::chrono::milliseconds kGrace{50};

bool IsStillWaiting(const std::future<void>& task) {
  return task.wait_for(kGrace) == std::future_status::timeout;
}

TEST(ReaderWriterLock, LetsReadersInSideBySide) {
  ReaderWriterLock lock;
  constexpr int kReaders = 4;
  support::Latch all_inside(kReaders);
  std::vector<std::jthread> readers;
  for (int i = 0; i < kReaders; ++i) {
    readers.emplace_back([&] {
      const std::shared_lock guard(lock);
      all_inside.ArriveAndWait();
    });
  }
  all_inside.Wait();
}

TEST(ReaderWriterLock, KeepsAWriterOutWhileAReaderIsIn) {
  ReaderWriterLock lock;
  lock.lock_shared();
  std::future<void> writer = std::async(std::launch::async, [&] { const std::unique_lock guard(lock); });
  EXPECT_TRUE(IsStillWaiting(writer));
  lock.unlock_shared();
  writer.get();
}

TEST(ReaderWriterLock, KeepsAReaderOutWhileAWriterIsIn) {
  ReaderWriterLock lock;
  lock.lock();
  std::future<void> reader = std::async(std::launch::async, [&] { const std::shared_lock guard(lock); });
  EXPECT_TRUE(IsStillWaiting(reader));
  lock.unlock();
  reader.get();
}

TEST(ReaderWriterLock, KeepsASecondWriterOut) {
  ReaderWriterLock lock;
  lock.lock();
  std::future<void> writer = std::async(std::launch::async, [&] { const std::unique_lock guard(lock); });
  EXPECT_TRUE(IsStillWaiting(writer));
  lock.unlock();
  writer.get();
}

TEST(ReaderWriterLock, AWaitingWriterKeepsNewReadersOut) {
  ReaderWriterLock lock;
  lock.lock_shared();
  std::atomic<bool> written = false;
  std::future<void> writer = std::async(std::launch::async, [&] {
    const std::unique_lock guard(lock);
    written = true;
  });
  // Nothing tells when the writer waits; readers that come before that still get in.
  std::atomic<bool> reader_saw_write = false;
  std::future<void> reader;
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  bool kept_out = false;
  while (!kept_out && std::chrono::steady_clock::now() < end) {
    support::Latch running(1);
    reader = std::async(std::launch::async, [&] {
      running.CountDown();
      const std::shared_lock guard(lock);
      reader_saw_write = written.load();
    });
    running.Wait();
    kept_out = IsStillWaiting(reader);
  }
  EXPECT_TRUE(kept_out);
  EXPECT_TRUE(IsStillWaiting(writer));
  lock.unlock_shared();
  writer.get();
  reader.get();
  EXPECT_TRUE(reader_saw_write);
}

TEST(ReaderWriterLock, EndlessOverlappingReadersDontKeepAWriterWaiting) {
  ReaderWriterLock lock;
  constexpr int kReaders = 3;
  std::atomic<bool> stop = false;
  support::Latch all_reading(kReaders);
  std::vector<std::jthread> readers;
  for (int i = 0; i < kReaders; ++i) {
    readers.emplace_back([&] {
      {
        const std::shared_lock guard(lock);
        all_reading.ArriveAndWait();
      }
      while (!stop) {
        const std::shared_lock guard(lock);
        std::this_thread::yield();
      }
    });
  }
  all_reading.Wait();
  {
    const std::unique_lock guard(lock);
    stop = true;
  }
}

TEST(ReaderWriterLock, GuardsDataOfManyReadersAndWriters) {
  ReaderWriterLock lock;
  constexpr int kThreads = 4;
  constexpr int kRounds = 500;
  int first = 0;
  int second = 0;
  std::atomic<int> torn = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        for (int round = 0; round < kRounds; ++round) {
          {
            const std::unique_lock guard(lock);
            ++first;
            ++second;
          }
          const std::shared_lock guard(lock);
          torn += first == second ? 0 : 1;
        }
      });
    }
  }
  EXPECT_EQ(first, kThreads * kRounds);
  EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace kelsd::platform
