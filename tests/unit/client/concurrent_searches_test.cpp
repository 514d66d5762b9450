// Searches beside each other and beside what changes the core's state.
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "client/client_impl.h"
#include "support/core_fixture.h"
#include "support/latch.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Runs;
using testing::ElementsAre;
using testing::IsEmpty;

// For expecting that a thread waits: a correct core never lets it go on, however long this is.
constexpr std::chrono::milliseconds kGrace{50};

SResult FindServices() {
  std::vector<SKelServiceSearchResult> results;
  return CKelSLPClientImpl::FindServices(results, "service:x", {}, "", "");
}

SResult FindAttributes() {
  SKelServiceAttributeSearchResult result;
  return CKelSLPClientImpl::FindAttributes(result, "service:x://h", std::vector<std::string>(), {}, "");
}

class ConcurrentSearches : public CoreFixture {};

TEST_F(ConcurrentSearches, RunSideBySideOnHandlesOfTheirOwn) {
  InitializeCore();
  constexpr int kSearches = 4;
  // No search ends before all are under way.
  support::Latch all_searching(kSearches);
  const auto meet = Runs([&] { all_searching.ArriveAndWait(); });
  scripted_slp::Always(Function::kFindSrvs, meet);
  scripted_slp::Always(Function::kFindAttrs, meet);
  std::vector<std::future<SResult>> searches;
  for (int i = 0; i < kSearches; ++i) {
    searches.push_back(std::async(std::launch::async, i % 2 == 0 ? &FindServices : &FindAttributes));
  }
  for (std::future<SResult>& search : searches) {
    EXPECT_THAT(search.get(), SameResult(kSuccess));
  }
  EXPECT_EQ(scripted_slp::Calls("SLPOpen").size(), 4U);
  EXPECT_EQ(scripted_slp::Calls("SLPClose").size(), 4U);
}

/// Something that changes the core's state and must wait for searches.
struct Change {
  const char* name;
  void (*run)();
};

class ConcurrentChange : public CoreFixture, public testing::WithParamInterface<Change> {};

TEST_P(ConcurrentChange, WaitsForARunningSearch) {
  InitializeCore();
  support::Latch searching(1);
  support::Latch may_end(1);
  const auto hold = Runs([&] {
    searching.CountDown();
    may_end.Wait();
  });
  Next(Function::kFindSrvs, hold);
  std::future<SResult> search = std::async(std::launch::async, &FindServices);
  searching.Wait();
  std::future<void> change = std::async(std::launch::async, GetParam().run);
  EXPECT_EQ(change.wait_for(kGrace), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls("SLPClose"), IsEmpty());
  may_end.CountDown();
  EXPECT_THAT(search.get(), SameResult(kSuccess));
  change.get();
  // The search closed its own handle before the resident one was touched.
  const std::vector<std::string> closed = scripted_slp::Calls("SLPClose");
  ASSERT_FALSE(closed.empty());
  EXPECT_EQ(closed.front(), "SLPClose(#3)");
}

TEST_P(ConcurrentChange, KeepsNewSearchesOutWhileItRuns) {
  InitializeCore();
  support::Latch changing(1);
  support::Latch may_end(1);
  Next(Function::kClose, Runs([&] {
         changing.CountDown();
         may_end.Wait();
       }));
  std::future<void> change = std::async(std::launch::async, GetParam().run);
  changing.Wait();
  std::future<SResult> search = std::async(std::launch::async, &FindServices);
  EXPECT_EQ(search.wait_for(kGrace), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls("SLPFindSrvs"), IsEmpty());
  may_end.CountDown();
  change.get();
  EXPECT_EQ(search.get(), CKelSLPImpl::IsInitialized() ? SResult::ERR_SUCCESS : SResult::ERR_NOT_INITIALIZED);
}

INSTANTIATE_TEST_SUITE_P(EveryChange, ConcurrentChange,
                         testing::Values(Change{"ReInitialize",
                                                [] { EXPECT_TRUE(CKelSLPImpl::ReInitialize(false).IsOk()); }},
                                         Change{"SetSLPClientConfig",
                                                [] {
                                                  CKelSLPClientConfig config;
                                                  EXPECT_TRUE(config.SetMTU(1000).IsOk());
                                                  EXPECT_TRUE(CKelSLPImpl::SetSLPClientConfig(config).IsOk());
                                                }},
                                         Change{"Shutdown", [] { CKelSLPImpl::Shutdown(); }}),
                         [](const testing::TestParamInfo<Change>& change) { return change.param.name; });

TEST_F(ConcurrentSearches, InitialisationWaitsForASearchToo) {
  InitializeCore();
  support::Latch searching(1);
  support::Latch may_end(1);
  Next(Function::kFindSrvs, Runs([&] {
         searching.CountDown();
         may_end.Wait();
       }));
  std::future<SResult> search = std::async(std::launch::async, &FindServices);
  searching.Wait();
  std::future<SResult> initialized = std::async(std::launch::async, [] { return CKelSLPImpl::Initialize(); });
  EXPECT_EQ(initialized.wait_for(kGrace), std::future_status::timeout);
  may_end.CountDown();
  EXPECT_THAT(search.get(), SameResult(kSuccess));
  EXPECT_THAT(initialized.get(), SameResult(kSuccess));
}

TEST_F(ConcurrentSearches, EndlessOverlappingSearchesDontKeepAReInitialisationWaiting) {
  InitializeCore();
  constexpr int kThreads = 3;
  std::atomic<bool> stop = false;
  support::Latch all_searched(kThreads);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        EXPECT_THAT(FindServices(), SameResult(kSuccess));
        all_searched.CountDown();
        while (!stop) {
          EXPECT_THAT(FindServices(), SameResult(kSuccess));
        }
      });
    }
    all_searched.Wait();
    EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
    stop = true;
  }
}

TEST_F(ConcurrentSearches, EverythingAtOnce) {
  InitializeCore();
  scripted_slp::Always(Function::kFindSrvs,
                       scripted_slp::Delivers({scripted_slp::Service("service:x://h", 1)}));
  constexpr int kRounds = 20;
  std::vector<std::jthread> threads;
  threads.emplace_back([] {
    for (int round = 0; round < kRounds; ++round) {
      EXPECT_THAT(CKelSLPImpl::ReInitialize(round % 2 == 0), SameResult(kSuccess));
    }
  });
  threads.emplace_back([] {
    for (int round = 0; round < kRounds; ++round) {
      CKelSLPClientConfig config;
      EXPECT_TRUE(config.SetMTU(1000 + round).IsOk());
      EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(config), SameResult(kSuccess));
    }
  });
  threads.emplace_back([] {
    for (int round = 0; round < kRounds; ++round) {
      CKelSLPClientConfig config;
      std::vector<SResult> errors;
      EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
      EXPECT_THAT(errors, IsEmpty());
    }
  });
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < kRounds; ++round) {
        EXPECT_THAT(FindServices(), SameResult(kSuccess));
        EXPECT_THAT(FindAttributes(), SameResult(kSuccess));
        EXPECT_TRUE(CKelSLPImpl::IsInitialized());
      }
    });
  }
}

}  // namespace
}  // namespace kelsd
