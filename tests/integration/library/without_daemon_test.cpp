// Searches on a network on which nobody answers end in the time that the properties allow.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "integration/library/library_fixture.h"
#include "support/machine_delay.h"

namespace kelsd::integration {
namespace {

using std::chrono::milliseconds;

// What the work beside the waits may take; the waits themselves are the properties'.
constexpr milliseconds kSlack{3000};

class WithoutDaemon : public LibraryTest {
 protected:
  void SetUp() override { ServeNothing(); }

  /// Expects that the test has taken no longer than the waits and what goes with them.
  void ExpectNoMoreThan(milliseconds waits) {
    EXPECT_LT(std::chrono::steady_clock::now() - start_, waits + kSlack + delay_.Allowance());
  }

 private:
  support::MachineDelay delay_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

TEST_F(WithoutDaemon, AMulticastSearchIsEmpty) {
  std::vector<SKelServiceSearchResult> found(1);
  EXPECT_THAT(CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", ""),
              Succeeded());
  EXPECT_TRUE(found.empty());
  ExpectNoMoreThan(milliseconds(CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT));
}

TEST_F(WithoutDaemon, AUnicastSearchTimesOut) {
  std::vector<SKelServiceSearchResult> found(1);
  const SResult result =
      CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", "127.0.0.1");
  EXPECT_EQ(result.ToString(),
            "Unicast request timed out. Code: 13. kelsd::CKelSLPClientImpl::FindServices SLPFindSrvs");
  EXPECT_EQ(found.size(), 1U);
  ExpectNoMoreThan(milliseconds(CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT));
}

TEST_F(WithoutDaemon, AShorterTimeoutEndsBothSooner) {
  CKelSLPClientConfig config;
  constexpr int kShortest = 1252;
  ASSERT_THAT(config.SetTimeout(kShortest), Succeeded());
  ASSERT_THAT(CKelSLPClient::SetSLPClientConfig(config), Succeeded());
  std::vector<SKelServiceSearchResult> found;
  EXPECT_THAT(CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", ""),
              Succeeded());
  EXPECT_EQ(CKelSLPClient::FindServices(found, "service:zdrest.tamro:http", {"tamro"}, "", "127.0.0.1"),
            SResult::ERR_NETWORK_TIMED_OUT);
  ExpectNoMoreThan(milliseconds(2 * kShortest));
}

}  // namespace
}  // namespace kelsd::integration
