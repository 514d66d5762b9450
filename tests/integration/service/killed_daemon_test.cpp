// A daemon that dies comes back with all services, and no application has to do anything for it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "integration/service/service_fixture.h"

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
  const auto before_start = steady_clock::now();
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  const milliseconds start_time = Since(before_start);
  for (const std::string& url : kUrls) {
    ASSERT_THAT(CKelSLPService::RegisterService(url, 300, std::map<std::string, std::string>(), {"tamro"}),
                Succeeded());
  }
  int in_time = 0;
  for (int i = 0; i < kTimes; ++i) {
    const pid_t killed = DaemonPid();
    ASSERT_GT(killed, 0);
    const auto killed_at = steady_clock::now();
    ASSERT_EQ(kill(killed, SIGKILL), 0);
    ASSERT_TRUE(WaitUntil(2 * kInterval + start_time + kSlack,
                          [&] { return DaemonPid() != killed && Find(kType) == kUrls; }))
        << "round " << i;
    in_time += Since(killed_at) <= 2 * kInterval + start_time ? 1 : 0;
  }
  EXPECT_EQ(DaemonStarts(), kTimes + 1);
  // A busy machine may spoil a round, but not most of them.
  EXPECT_GE(in_time, kTimes - 4);
}

}  // namespace
}  // namespace kelsd::integration
