// A service outlives the lifetime of its registration, but not for long its application.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "integration/service/other_application.h"
#include "integration/service/service_fixture.h"
#include "support/machine_delay.h"

namespace kelsd::integration {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kType = "service:zdrest.tamro:http";
constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";
// Between two searches; so much less than any lifetime that no gap goes unseen.
constexpr milliseconds kSearchPause{20};
// A machine that stands still for so long may keep a renewal from coming in time.
constexpr milliseconds kStandstill{500};
// What may be left of a service's lifetime when it is renewed, and what a standstill goes on to be felt.
constexpr milliseconds kAftermath{1000};
// What a busy machine may add to the end of a service.
constexpr milliseconds kEndSlack{5000};

struct Times {
  int lifetime;
  seconds watched;
};

/// More than three lifetimes of a service.
constexpr Times kLongTimes{12, seconds(40)};

/// More than two lifetimes; longer ones on request.
Times WatchedTimes() {
  return std::getenv("KELSD_LONG_TESTS") != nullptr ? kLongTimes : Times{3, seconds(8)};
}

milliseconds Since(steady_clock::time_point start) {
  return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
}

class Renewal : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceTest::SetUp();
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  }

  // Registers, and searches all the time.
  void ExpectToFindItAllTheTime(const Times& times) {
    ASSERT_THAT(CKelSLPService::RegisterService(kUrl, static_cast<unsigned short>(times.lifetime),
                                                std::map<std::string, std::string>(), {}),
                Succeeded());
    SearchAllTheTime(times.watched);
    EXPECT_EQ(DaemonStarts(), 1);
  }

  // Every search finds the service. Only behind a standstill of the machine it may be missing, until its
  // renewal has come.
  static void SearchAllTheTime(seconds span) {
    support::MachineDelay delay;
    milliseconds delay_before{0};
    const auto start = steady_clock::now();
    auto standstill = start - kAftermath;
    while (steady_clock::now() - start < span) {
      const std::vector<std::string> found = Find(kType);
      const milliseconds delay_now = delay.Total();
      if (delay_now - delay_before > kStandstill) {
        standstill = steady_clock::now();
      }
      delay_before = delay_now;
      if (found.empty() && Since(standstill) < kAftermath) {
        ASSERT_TRUE(WaitUntil(kSlack, [] { return !Find(kType).empty(); })) << "it is renewed";
        continue;
      }
      ASSERT_THAT(found, ElementsAre(kUrl)) << "after " << Since(start).count() << " ms";
      std::this_thread::sleep_for(kSearchPause);
    }
  }
};

TEST_F(Renewal, KeepsAServiceFoundByEverySearch) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(500), Succeeded());
  ExpectToFindItAllTheTime(kLongTimes);
}

TEST_F(Renewal, KeepsAServiceFoundWithTheDefaultCheckInterval) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(2000), Succeeded());
  // Renewed once, before the first registration would have ended.
  ExpectToFindItAllTheTime({12, seconds(14)});
}

TEST_F(Renewal, KeepsAServiceFoundWithAShortCheckInterval) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(100), Succeeded());
  ExpectToFindItAllTheTime(WatchedTimes());
}

TEST_F(Renewal, EndsWithTheApplication) {
  const Times times = WatchedTimes();
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  OtherApplication other(kUrl, times.lifetime, milliseconds(100));
  other.LookAfterIt();
  ASSERT_NO_FATAL_FAILURE(SearchAllTheTime(seconds(times.lifetime + 1))) << "its application renews it";
  support::MachineDelay delay;
  other.Kill();
  const auto killed = steady_clock::now();
  EXPECT_TRUE(WaitUntil(seconds(times.lifetime) + kSlack, [] { return Find(kType).empty(); }));
  EXPECT_LE(Since(killed), seconds(times.lifetime) + kEndSlack + delay.Allowance());
  EXPECT_THAT(Find(kType), IsEmpty());
}

}  // namespace
}  // namespace kelsd::integration
