// The daemon as a service of this host: started, found running, started anew and stopped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "integration/service/service_fixture.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

using testing::HasSubstr;

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";

class Control : public ServiceTest {
 protected:
  static bool Running() {
    bool running = false;
    EXPECT_THAT(CKelSLPService::IsSLPDRunning(running), Succeeded());
    return running;
  }
};

TEST_F(Control, StartsAndStopsWithoutInitialisation) {
  EXPECT_FALSE(Running());
  EXPECT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_TRUE(Running());
  EXPECT_GT(DaemonPid(), 0);
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
  EXPECT_FALSE(Running());
  EXPECT_EQ(DaemonPid(), 0);
  EXPECT_EQ(DaemonStarts(), 1);
}

TEST_F(Control, RefusesToStartARunningDaemon) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  const pid_t daemon = DaemonPid();
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_ALREADY_RUNNING, "", kAgent + "StartSLPD ")));
  EXPECT_EQ(DaemonPid(), daemon);
  EXPECT_EQ(DaemonStarts(), 1);
}

TEST_F(Control, StopsWhatDoesNotRun) {
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
}

TEST_F(Control, RestartsWithAnotherProcess) {
  EXPECT_THAT(CKelSLPService::RestartSLPD(), Succeeded()) << "one that is stopped is started";
  const pid_t daemon = DaemonPid();
  EXPECT_THAT(CKelSLPService::RestartSLPD(), Succeeded());
  EXPECT_TRUE(Running());
  EXPECT_NE(DaemonPid(), daemon);
  EXPECT_EQ(DaemonStarts(), 2);
}

TEST_F(Control, FindsADaemonGoneThatWasKilled) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  kill(DaemonPid(), SIGKILL);
  EXPECT_TRUE(WaitUntil(kSlack, [] { return !Running(); }));
  EXPECT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_TRUE(Running());
}

TEST_F(Control, TellsWhyTheDaemonCouldNotStart) {
  const slp::support::SlpPeer other([](const auto&) { return std::vector<slp::support::PeerReply>(); },
                                    {.port = port()});
  const SResult result = CKelSLPService::StartSLPD();
  EXPECT_EQ(result.GetErrorCode(), SResult::ERR_SLPD_START);
  EXPECT_EQ(result.GetErrorDebug(), kAgent + "StartSLPD StartService");
  EXPECT_THAT(result.GetErrorDetail(), HasSubstr("127.0.0.1")) << result.ToString();
  EXPECT_THAT(result.GetErrorDetail(), HasSubstr("Address already in use"));
  EXPECT_FALSE(Running());
}

TEST_F(Control, TellsOfAProgramThatIsMissing) {
  const std::string missing = File("missing");
  setenv("KELSD_SLPD", missing.c_str(), 1);
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START, missing + ": No such file or directory",
                                 kAgent + "StartSLPD StartService")));
  EXPECT_FALSE(Running());
}

}  // namespace
}  // namespace kelsd::integration
