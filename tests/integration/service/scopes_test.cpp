// Scopes that the daemon lacks are added to its settings, once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "integration/service/other_application.h"
#include "integration/service/service_fixture.h"
#include "kelsd/CKelServiceTypeZDREST.h"
#include "support/machine_delay.h"

namespace kelsd::integration {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr milliseconds kInterval{500};
constexpr milliseconds kOthersInterval{2500};
constexpr const char* kType = "service:zdrest.tamro:http";
constexpr const char* kLabUrl = "service:zdrest.tamro:http://127.0.0.1:8080";
constexpr const char* kLabUrl2 = "service:zdrest.tamro:http://127.0.0.1:8081";
constexpr const char* kOwnUrl = "service:zdrest.tamro:http://127.0.0.1:8090";

class Scopes : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceTest::SetUp();
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
    ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  }

  static SResult Register(const std::string& url, const std::vector<std::string>& scopes) {
    return CKelSLPService::RegisterService(url, 300, std::map<std::string, std::string>(), scopes);
  }
};

TEST_F(Scopes, AddsOneThatTheDaemonLacksWithOneRestart) {
  const unsigned long before = DaemonPid();
  ASSERT_THAT(Register(kLabUrl, {"lab"}), Succeeded());
  const unsigned long after = DaemonPid();
  EXPECT_NE(after, before);
  EXPECT_EQ(DaemonStarts(), 2);
  EXPECT_THAT(Configuration(), HasSubstr("net.slp.useScopes = TAMRO,LAB\r\n"));
  EXPECT_THAT(Find(kType, {"lab"}), ElementsAre(kLabUrl));
  EXPECT_THAT(Find(kType, {"tamro"}), IsEmpty());

  ASSERT_THAT(Register(kLabUrl2, {" Lab "}), Succeeded());
  EXPECT_EQ(DaemonPid(), after);
  EXPECT_EQ(DaemonStarts(), 2);
  EXPECT_THAT(Configuration(), HasSubstr("net.slp.useScopes = TAMRO,LAB\r\n"));
  EXPECT_THAT(Find(kType, {"lab"}), ElementsAre(kLabUrl, kLabUrl2));

  EXPECT_THAT(CKelSLPService::DeregisterService(kLabUrl), Succeeded());
  EXPECT_THAT(Find(kType, {"lab"}), ElementsAre(kLabUrl2));
  EXPECT_THAT(CKelSLPService::DeregisterService(kLabUrl2), Succeeded());
  EXPECT_THAT(Find(kType, {"lab"}), IsEmpty());
}

TEST_F(Scopes, TakesTheTypesOwnSpellingForTheDaemons) {
  const std::string configuration = Configuration();
  const unsigned long daemon = DaemonPid();
  const CKelServiceTypeZDREST server("127.0.0.1:8080", 300);
  ASSERT_THAT(server.GetScopes(), ElementsAre("tamro"));
  ASSERT_THAT(CKelSLPService::RegisterService(server), Succeeded());
  ASSERT_THAT(CKelSLPService::RegisterService(server), Succeeded());
  EXPECT_EQ(DaemonPid(), daemon);
  EXPECT_EQ(DaemonStarts(), 1);
  EXPECT_EQ(Configuration(), configuration);
  EXPECT_THAT(Find(kType, {"tamro"}), ElementsAre(kLabUrl));
}

TEST_F(Scopes, RegistersTheDaemonsOwnWithoutAny) {
  ASSERT_THAT(Register(kOwnUrl, {}), Succeeded());
  EXPECT_THAT(Find(kType, {"tamro"}), ElementsAre(kOwnUrl));
  EXPECT_EQ(DaemonStarts(), 1);
}

TEST_F(Scopes, KeepsTheServicesOfAllApplicationsThroughTheRestart) {
  constexpr const char* kOtherUrl = "service:zdrest.tamro:http://127.0.0.1:8099";
  // It looks at nothing until the restart is over: whoever finds the daemon stopped starts it, and a stop
  // that finds it running again has failed.
  const OtherApplication other(kOtherUrl, 300, kOthersInterval);
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(static_cast<int>(kInterval.count())), Succeeded());
  ASSERT_THAT(Register(kOwnUrl, {"tamro"}), Succeeded());
  EXPECT_THAT(Find(kType), ElementsAre(kOwnUrl, kOtherUrl));

  support::MachineDelay delay;
  ASSERT_THAT(Register(kLabUrl, {"lab"}), Succeeded());
  const auto restarted = std::chrono::steady_clock::now();
  other.LookAfterIt();
  EXPECT_EQ(DaemonStarts(), 2);
  EXPECT_TRUE(WaitUntil(2 * kOthersInterval + kSlack, [] { return Find(kType).size() == 3; }));
  EXPECT_LE(std::chrono::steady_clock::now() - restarted, 2 * kOthersInterval + delay.Allowance());
  EXPECT_THAT(Find(kType), ElementsAre(kLabUrl, kOwnUrl, kOtherUrl));
  EXPECT_EQ(DaemonStarts(), 2);
}

}  // namespace
}  // namespace kelsd::integration
