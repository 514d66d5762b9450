// Eight threads use everything at once. Afterwards the daemon holds what was left registered, nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "integration/service/service_fixture.h"

namespace kelsd::integration {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::IsEmpty;

constexpr unsigned kThreads = 8;
constexpr int kServicesPerThread = 3;
constexpr int kIntervalMs = 200;
constexpr const char* kType = "service:zdrest.tamro:http";

/// How long the threads work; longer on request.
seconds Span() {
  return seconds(std::getenv("KELSD_LONG_TESTS") != nullptr ? 30 : 5);
}

/// What a thread does, each as often as its weight says.
enum Work { kRegister, kDeregister, kSearch, kReInitialize, kConfigureDaemon };
constexpr std::array<double, 5> kWeights = {30, 20, 30, 10, 1};

class ManyThreads : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceTest::SetUp();
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
    ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(kIntervalMs), Succeeded());
    ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  }

  // One thread: changes its own services at random, and notes which ones are registered in the end.
  void Run(unsigned number) {
    std::minstd_rand random(number + 1);
    std::discrete_distribution<int> choose(kWeights.begin(), kWeights.end());
    const auto end = steady_clock::now() + Span();
    std::set<std::string> registered;
    while (steady_clock::now() < end) {
      const std::string url = std::string(kType) + "://127.0.0.1:" +
                              std::to_string(10000 + number * 10 + random() % kServicesPerThread);
      switch (choose(random)) {
        case kRegister:
          Note(CKelSLPService::RegisterService(
              url, 300, std::map<std::string, std::string>(),
              random() % 2 == 0 ? std::vector<std::string>{"tamro"} : std::vector<std::string>()));
          registered.insert(url);
          break;
        case kDeregister:
          if (registered.erase(url) > 0) {
            Note(CKelSLPService::DeregisterService(url));
          }
          break;
        case kSearch: {
          // The daemon may just be starting anew: a search then fails, but it comes back.
          std::vector<SKelServiceSearchResult> found;
          static_cast<void>(CKelSLPClient::FindServices(found, kType, {"tamro"}, "", "127.0.0.1"));
          break;
        }
        case kReInitialize:
          Note(ConfigureClient(1300 + static_cast<int>(random() % 100)));
          break;
        default:
          Note(ConfigureDaemon());
          break;
      }
    }
    const std::lock_guard guard(mutex_);
    expected_.insert(expected_.end(), registered.begin(), registered.end());
  }

  // A change of the client's settings initialises the library again.
  static SResult ConfigureClient(int mtu) {
    CKelSLPClientConfig config;
    // Five seconds for a request, which is repeated meanwhile: no machine is that busy.
    constexpr int kTimeout = 12500;
    SResult result = config.SetTimeout(kTimeout);
    if (result.IsOk()) {
      result = config.SetMTU(mtu);
    }
    return result.IsOk() ? CKelSLPClient::SetSLPClientConfig(config) : result;
  }

  static SResult ConfigureDaemon() {
    CKelSLPServiceConfig config;
    std::vector<SResult> errors;
    SResult result = CKelSLPService::GetSLPServiceConfig(config, errors);
    if (result.IsNotOk()) {
      return result;
    }
    config.SetTraceDrop(!config.GetTraceDrop());
    return CKelSLPService::SetSLPServiceConfig(config);
  }

  void Note(const SResult& result) {
    if (result.IsNotOk()) {
      const std::lock_guard guard(mutex_);
      problems_.insert(result.ToString());
    }
  }

  std::mutex mutex_;
  std::vector<std::string> expected_;
  std::set<std::string> problems_;
};

TEST_F(ManyThreads, LeaveTheDaemonWithWhatIsRegistered) {
  {
    std::vector<std::jthread> threads;
    for (unsigned i = 0; i < kThreads; ++i) {
      threads.emplace_back([this, i] { Run(i); });
    }
    // On a busy machine none of them may come to it.
    Note(ConfigureDaemon());
  }
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_GT(DaemonStarts(), 1) << "settings were changed";
  std::sort(expected_.begin(), expected_.end());
  EXPECT_TRUE(WaitUntil(kSlack, [&] { return Find(kType) == expected_; }));
  EXPECT_EQ(Find(kType), expected_);
  // The daemon's own setting, not one of those that the clients used meanwhile.
  EXPECT_THAT(Configuration(), testing::HasSubstr("net.slp.MTU = 1400\r\n"));
}

}  // namespace
}  // namespace kelsd::integration
