#include "service/dropped_services.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/latch.h"

namespace kelsd {
namespace {

using testing::ElementsAre;

std::list<SDroppedService> Dropped(const std::string& url) {
  return {{url, SResult(SResult::ERR_PARSE_ERROR)}};
}

TEST(DroppedServices, AThreadLeavesItsReportsToTheOneThatIsDelivering) {
  DroppedServiceReports reports;
  std::vector<std::pair<std::string, std::thread::id>> calls;
  std::thread other;
  reports.SetCallback([&](const std::string& url, const SResult&) {
    calls.emplace_back(url, std::this_thread::get_id());
    if (url == "a") {
      // Would hang if it waited for this call.
      other = std::thread([&] {
        reports.Add(Dropped("b"));
        reports.Deliver();
      });
      other.join();
      EXPECT_EQ(calls.size(), 1U);
    }
  });
  reports.Add(Dropped("a"));
  reports.Deliver();
  const auto self = std::this_thread::get_id();
  EXPECT_THAT(calls, ElementsAre(std::pair("a", self), std::pair("b", self)));
}

TEST(DroppedServices, AReplacedCallbackTakesEffectWithTheNextReport) {
  DroppedServiceReports reports;
  std::vector<std::string> calls;
  const auto second = [&](const std::string& url, const SResult&) { calls.push_back("second " + url); };
  reports.SetCallback([&](const std::string& url, const SResult&) {
    reports.SetCallback(second);
    // This function object lives until the call has ended.
    calls.push_back("first " + url);
  });
  reports.Add(Dropped("a"));
  reports.Add(Dropped("b"));
  reports.Deliver();
  EXPECT_THAT(calls, ElementsAre("first a", "second b"));
}

TEST(DroppedServices, AnEmptyCallbackLosesReports) {
  DroppedServiceReports reports;
  int calls = 0;
  reports.Add(Dropped("a"));
  reports.Deliver();
  reports.SetCallback([&](const std::string&, const SResult&) { ++calls; });
  reports.Deliver();
  EXPECT_EQ(calls, 0);
  reports.SetCallback(nullptr);
  reports.Add(Dropped("b"));
  reports.Deliver();
  EXPECT_EQ(calls, 0);
}

TEST(DroppedServices, MayBeSetAndCalledAtOnce) {
  DroppedServiceReports reports;
  constexpr int kRounds = 2000;
  std::atomic<int> calls = 0;
  support::Latch begin(2);
  std::thread setter([&] {
    begin.ArriveAndWait();
    for (int i = 0; i < kRounds; ++i) {
      // Memory of its own, so that a torn function object would be noticed.
      reports.SetCallback([&calls, owned = std::make_shared<std::string>("x")](
                              const std::string& url, const SResult&) { calls += url == *owned ? 1 : 0; });
    }
  });
  reports.SetCallback([&](const std::string&, const SResult&) { ++calls; });
  begin.ArriveAndWait();
  for (int i = 0; i < kRounds; ++i) {
    reports.Add(Dropped("x"));
    reports.Deliver();
  }
  setter.join();
  EXPECT_EQ(calls, kRounds);
}

}  // namespace
}  // namespace kelsd
