// The daemon as a service of this host: started, found running, started anew and stopped.
#include <gtest/gtest.h>

#include <string>

#include "integration/service/service_fixture.h"

namespace kelsd::integration {
namespace {

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
  EXPECT_NE(DaemonPid(), 0U);
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
  EXPECT_FALSE(Running());
  EXPECT_EQ(DaemonPid(), 0U);
  EXPECT_EQ(DaemonStarts(), 1);
}

TEST_F(Control, RefusesToStartARunningDaemon) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  const unsigned long daemon = DaemonPid();
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
  const unsigned long daemon = DaemonPid();
  EXPECT_THAT(CKelSLPService::RestartSLPD(), Succeeded());
  EXPECT_TRUE(Running());
  EXPECT_NE(DaemonPid(), daemon);
  EXPECT_EQ(DaemonStarts(), 2);
}

TEST_F(Control, FindsADaemonGoneThatWasKilled) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  daemon().Kill();
  EXPECT_TRUE(WaitUntil(kSlack, [] { return !Running(); }));
  EXPECT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_TRUE(Running());
}

}  // namespace
}  // namespace kelsd::integration
