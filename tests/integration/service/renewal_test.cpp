// A service outlives the lifetime of its registration, but not for long its application.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <string>
#include <thread>

#include "integration/service/other_application.h"
#include "integration/service/service_fixture.h"

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
    const auto start = steady_clock::now();
    while (steady_clock::now() - start < times.watched) {
      ASSERT_THAT(Find(kType), ElementsAre(kUrl))
          << "after " << std::chrono::duration_cast<milliseconds>(steady_clock::now() - start).count()
          << " ms";
      std::this_thread::sleep_for(kSearchPause);
    }
    EXPECT_EQ(DaemonStarts(), 1);
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
  const auto start = steady_clock::now();
  while (steady_clock::now() - start < seconds(times.lifetime + 1)) {
    ASSERT_THAT(Find(kType), ElementsAre(kUrl)) << "its application renews it";
    std::this_thread::sleep_for(kSearchPause);
  }
  other.Kill();
  EXPECT_TRUE(WaitUntil(seconds(times.lifetime) + kSlack, [] { return Find(kType).empty(); }));
  EXPECT_THAT(Find(kType), IsEmpty());
}

}  // namespace
}  // namespace kelsd::integration
