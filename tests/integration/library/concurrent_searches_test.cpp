// Many threads of one process search at once while the library is initialised again and again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "integration/library/library_fixture.h"

namespace kelsd::integration {
namespace {

using testing::IsEmpty;

constexpr int kThreads = 4;
constexpr int kSearches = 25;

using ConcurrentSearches = LibraryTest;

TEST_F(ConcurrentSearches, AllFindTheSameWhileTheConfigurationChanges) {
  Serve(FamilyServices());
  std::mutex mutex;
  std::vector<std::string> problems;
  std::atomic<int> running = kThreads;
  const auto search = [&] {
    for (int i = 0; i < kSearches; ++i) {
      std::vector<SKelServiceSearchResult> found;
      const SResult result =
          CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", "127.0.0.1");
      if (result.IsNotOk() || found.size() != 2) {
        const std::lock_guard guard(mutex);
        problems.push_back(result.ToString() + " found " + std::to_string(found.size()));
      }
    }
    --running;
  };
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back(search);
    }
    CKelSLPClientConfig config;
    int mtu = CKelSLPConfig::MTU_DEFAULT;
    int changes = 0;
    while (running > 0 || changes == 0) {
      mtu = mtu == 1400 ? 1300 : 1400;
      EXPECT_THAT(config.SetMTU(mtu), Succeeded());
      EXPECT_THAT(CKelSLPClient::SetSLPClientConfig(config), Succeeded());
      ++changes;
    }
  }
  EXPECT_THAT(problems, IsEmpty());
}

}  // namespace
}  // namespace kelsd::integration
