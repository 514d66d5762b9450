// A daemon that dies comes back with all services, and no application has to do anything for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "integration/service/service_fixture.h"
#include "support/machine_delay.h"

namespace kelsd::integration {
namespace {

using std::chrono::steady_clock;

constexpr int kTimes = 20;
constexpr milliseconds kInterval{500};
constexpr const char* kType = "service:zdrest.tamro:http";
const std::vector<std::string> kUrls = {std::string(kType) + "://127.0.0.1:8080",
                                        std::string(kType) + "://127.0.0.1:8090"};

milliseconds Since(steady_clock::time_point start) {
  return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
}

using KilledDaemon = ServiceTest;

TEST_F(KilledDaemon, ComesBackWithAllServicesTwentyTimes) {
  ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(static_cast<int>(kInterval.count())), Succeeded());
  // What a start takes that the application asks for: until both services are there and found.
  const auto before_start = steady_clock::now();
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  for (const std::string& url : kUrls) {
    ASSERT_THAT(CKelSLPService::RegisterService(url, 300, std::map<std::string, std::string>(), {"tamro"}),
                Succeeded());
  }
  ASSERT_EQ(Find(kType), kUrls);
  const milliseconds asked_start = Since(before_start);
  support::MachineDelay delay;
  for (int i = 0; i < kTimes; ++i) {
    // A service that has come back does so at a tick of the timer; each round kills later behind it.
    std::this_thread::sleep_for(kInterval * i / kTimes);
    const unsigned long killed = DaemonPid();
    ASSERT_NE(killed, 0U);
    const milliseconds delay_before = delay.Total();
    const auto killed_at = steady_clock::now();
    daemon().Kill();
    // A search while nobody serves takes seconds where the system doesn't tell that a port is closed. A start
    // shows in its count or in the new process, whichever the system has first.
    const auto has_begun = [&] {
      const unsigned long process = DaemonPid();
      return DaemonStarts() > i + 1 || (process != 0 && process != killed);
    };
    ASSERT_TRUE(WaitUntil(2 * kInterval + asked_start + kSlack, has_begun));
    const auto began_at = steady_clock::now();
    ASSERT_TRUE(WaitUntil(kSlack, [&] { return DaemonStarts() > i + 1 && DaemonPid() != 0; }));
    const milliseconds start = Since(began_at);
    ASSERT_TRUE(WaitUntil(kSlack, [&] { return Find(kType) == kUrls; })) << "round " << i;
    const milliseconds took = Since(killed_at);
    const milliseconds allowance = delay.Allowance(delay_before);
    EXPECT_LE(took.count(), (2 * kInterval + asked_start + start + allowance).count())
        << "round " << i << ", first start " << asked_start.count() << " ms, this start " << start.count()
        << " ms, allowed for the machine " << allowance.count() << " ms";
  }
  EXPECT_EQ(DaemonStarts(), kTimes + 1);
}

}  // namespace
}  // namespace kelsd::integration
