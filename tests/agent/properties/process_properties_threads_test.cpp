// What threads see of the store; meant for the thread sanitizer as well.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "properties/process_properties.h"

namespace slp {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 300;

void RunTogether(const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int index = 0; index < kThreads; ++index) {
    threads.emplace_back(work, index);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

// No files: what the machine has in its own must not matter.
PropertyFiles NoFiles() {
  return {};
}

TEST(ProcessPropertiesThreadsTest, ValuesSetByOneAreReadWholeByTheOthers) {
  ProcessProperties store(NoFiles);
  store.Acquire();
  std::atomic<int> wrong = 0;
  RunTogether([&](int index) {
    for (int round = 0; round < kRounds; ++round) {
      store.Set("net.slp.useScopes", std::string(50, static_cast<char>('a' + index)));
      const std::string value = store.Get("net.slp.useScopes");
      wrong += value != std::string(50, value.front());
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(ProcessPropertiesThreadsTest, TextsStayReadableWhileHandlesComeAndGo) {
  ProcessProperties store(NoFiles);
  std::atomic<int> wrong = 0;
  RunTogether([&](int index) {
    for (int round = 0; round < kRounds; ++round) {
      store.Acquire();
      if (index == 0) {
        store.Set("net.slp.port", std::to_string(1000 + round));
      }
      const char* const port = store.Get("net.slp.port");
      store.Release();
      wrong += std::string(port) != "427" && std::stoi(port) < 1000;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_THAT(store.Get("net.slp.port"), testing::StrEq("427")) << "the last handle dropped what was set";
}

TEST(ProcessPropertiesThreadsTest, SnapshotsAreOfOneMoment) {
  ProcessProperties store(NoFiles);
  store.Acquire();
  std::atomic<int> wrong = 0;
  RunTogether([&](int index) {
    for (int round = 0; round < kRounds; ++round) {
      if (index == 0) {
        store.Set("net.slp.port", std::to_string(1000 + round));
      } else {
        const int port = store.Snapshot()->GetInt("net.slp.port");
        wrong += port != 427 && (port < 1000 || port >= 1000 + kRounds);
      }
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST(ProcessPropertiesThreadsTest, FilesAreReadOnceForAllWhoComeTogether) {
  std::atomic<int> loads = 0;
  ProcessProperties store([&loads] {
    ++loads;
    return PropertyFiles();
  });
  RunTogether([&](int) { store.Acquire(); });
  EXPECT_EQ(loads, 1);
  RunTogether([&](int) { store.Release(); });
  store.Acquire();
  EXPECT_EQ(loads, 2);
}

}  // namespace
}  // namespace slp
