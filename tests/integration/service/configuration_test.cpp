// The daemon's settings are changed in its file, and take effect by one restart.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "integration/service/service_fixture.h"

namespace kelsd::integration {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* kType = "service:zdrest.tamro:http";
constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";

constexpr const char* kSettings =
    "# of the administrator\n"
    "net.slp.useScopes = LAB\n"
    "\n"
    "; another comment = with a sign\n"
    "net.example.foreign=stays\n"
    "net.slp.traceReg = false\n"
    "  a line of no kind\n"
    "net.slp.useScopes = TAMRO\n"
    "net.example.last = caf\xC3\xA9\n";

class Configured : public ServiceTest {
 protected:
  void SetUp() override {
    WriteConfiguration(kSettings);
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
    ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
    ASSERT_EQ(DaemonStarts(), 1);
  }

  static CKelSLPServiceConfig Settings() {
    CKelSLPServiceConfig config;
    std::vector<SResult> errors;
    EXPECT_THAT(CKelSLPService::GetSLPServiceConfig(config, errors), Succeeded());
    EXPECT_THAT(errors, IsEmpty());
    return config;
  }

  /// What the lines of SetUp become: in their order, with the scopes and the tracing of registrations as
  /// given.
  std::string Lines(const std::string& scopes, const std::string& trace) const {
    return "net.slp.interfaces = 127.0.0.1\r\nnet.slp.port = " + std::to_string(port()) +
           "\r\n"
           "# of the administrator\r\n"
           "net.slp.useScopes = " +
           scopes +
           "\r\n"
           "\r\n"
           "; another comment = with a sign\r\n"
           "net.example.foreign = stays\r\n"
           "net.slp.traceReg = " +
           trace +
           "\r\n"
           "  a line of no kind\r\n"
           "net.slp.useScopes = " +
           scopes +
           "\r\n"
           "net.example.last = caf\xC3\xA9\r\n";
  }
};

TEST_F(Configured, RestartsOnceForAChange) {
  const unsigned long before = DaemonPid();
  CKelSLPServiceConfig config = Settings();
  config.SetTraceReg(true);
  ASSERT_THAT(CKelSLPService::SetSLPServiceConfig(config), Succeeded());
  EXPECT_NE(DaemonPid(), before);
  EXPECT_EQ(DaemonStarts(), 2);
  EXPECT_TRUE(Settings().GetTraceReg());
  EXPECT_THAT(Configuration(), StartsWith(Lines("TAMRO", "true")));

  ASSERT_THAT(CKelSLPService::RegisterService(kUrl, 300, std::map<std::string, std::string>(), {}),
              Succeeded());
  EXPECT_THAT(Log(), HasSubstr(kUrl)) << "the daemon reads what was written";
}

TEST_F(Configured, DoesNotRestartWithoutAChange) {
  const unsigned long daemon = DaemonPid();
  ASSERT_THAT(CKelSLPService::SetSLPServiceConfig(Settings()), Succeeded());
  const std::string written = Configuration();
  EXPECT_THAT(written, StartsWith(Lines("TAMRO", "false")));
  ASSERT_THAT(CKelSLPService::SetSLPServiceConfig(Settings()), Succeeded());
  EXPECT_EQ(Configuration(), written);
  EXPECT_EQ(DaemonPid(), daemon);
  EXPECT_EQ(DaemonStarts(), 1);
}

TEST_F(Configured, LetsTheLastOfTwoLinesCountAndChangesBoth) {
  EXPECT_THAT(Settings().GetUseScopes(), ElementsAre("TAMRO"));
  ASSERT_THAT(CKelSLPService::RegisterService(kUrl, 300, std::map<std::string, std::string>(), {"tamro"}),
              Succeeded());
  EXPECT_EQ(DaemonStarts(), 1) << "the daemon serves the last one, too";

  CKelSLPServiceConfig config = Settings();
  config.SetUseScopes({"TAMRO", "OTHER"});
  ASSERT_THAT(CKelSLPService::SetSLPServiceConfig(config), Succeeded());
  EXPECT_THAT(Configuration(), StartsWith(Lines("TAMRO,OTHER", "false")));
  EXPECT_THAT(Settings().GetUseScopes(), ElementsAre("TAMRO", "OTHER"));
  EXPECT_EQ(DaemonStarts(), 2);
  EXPECT_THAT(Find(kType, {"other"}), IsEmpty());
  EXPECT_THAT(Find(kType, {"tamro"}), ElementsAre(kUrl)) << "the restart registers again";
}

TEST_F(Configured, StartsAStoppedDaemonForAChange) {
  ASSERT_THAT(CKelSLPService::StopSLPD(), Succeeded());
  CKelSLPServiceConfig config = Settings();
  config.SetTraceMsg(true);
  ASSERT_THAT(CKelSLPService::SetSLPServiceConfig(config), Succeeded());
  EXPECT_NE(DaemonPid(), 0U);
  EXPECT_EQ(DaemonStarts(), 2);
}

using Misconfigured = ServiceTest;

TEST_F(Misconfigured, ReportsValuesThatTheAgentItselfCannotUse) {
  WriteConfiguration("net.slp.MTU = abc\nnet.slp.unicastTimeouts = 100,x\n");
  ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  const std::string reader = "CKelSLPImpl::GetSLPServiceConfigInternal kelsd::CKelSLPImpl::";
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPService::GetSLPServiceConfig(config, errors), Succeeded());
  EXPECT_THAT(
      errors,
      ElementsAre(
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE,
                             "Property: Unicast Timeouts. StringConvert(x,long double,1).",
                             reader + "GetTimeoutList kelsd::CKelSLPImpl::ParseTimeoutsList")),
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE, "Property: MTU. StringConvert(abc,long double,1).",
                             reader + "GetNumericProperty kelsd::CKelSLPImpl::ParseNumericProperty"))));
  EXPECT_EQ(config.GetMTU(), 1400);
  EXPECT_EQ(config.GetUnicastTimeouts(), CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP());
}

}  // namespace
}  // namespace kelsd::integration
