#include "platform/service_manager.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <string>
#include <thread>

#include "support/fake_platform/environment.h"
#include "support/fake_platform/fake_clock.h"
#include "support/fake_platform/fake_service_manager.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::platform {
namespace {

// What holds for the system's daemon and for the one that other tests play.
class ServiceManagerContract : public testing::TestWithParam<bool> {
 protected:
  ServiceManagerContract() {
    SetEnvironment("KELSD_SLPD", KELSD_TEST_DAEMON_PROGRAM);
    SetEnvironment("KELSD_SLPD_PIDFILE", folder_.Path("slpd.pid"));
    fake_.SetState(kServiceStopped);
    manager_ = services().OpenManager(service_access::kManagerReadControl);
    service_ = services().OpenNamed(
        manager_, "slpd", service_access::kQueryStatus | service_access::kStart | service_access::kStop);
  }
  ~ServiceManagerContract() override {
    ServiceStatus status;
    if (State() == kServiceRunning) {
      EXPECT_TRUE(services().RequestStop(service_, status));
    }
    EXPECT_TRUE(Reaches(kServiceStopped));
    services().CloseManaged(service_);
    services().CloseManaged(manager_);
    ClearEnvironment("KELSD_SLPD");
    ClearEnvironment("KELSD_SLPD_PIDFILE");
    ClearEnvironment("KELSD_TEST_DAEMON");
  }
  ServiceManagerContract(const ServiceManagerContract&) = delete;
  ServiceManagerContract& operator=(const ServiceManagerContract&) = delete;

  ServiceManager& services() { return GetParam() ? static_cast<ServiceManager&>(fake_) : SystemServices(); }

  std::uint32_t State() {
    ServiceStatus status;
    EXPECT_TRUE(services().QueryStatus(service_, status));
    return status.current_state;
  }

  bool Reaches(std::uint32_t state) {
    for (int i = 0; i < 1000; ++i) {
      if (State() == state) {
        return true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
  }

  TemporaryFolder folder_;
  FakeClock clock_;
  FakeServiceManager fake_{clock_};
  ServiceManager::Handle manager_ = nullptr;
  ServiceManager::Handle service_ = nullptr;
};

TEST_P(ServiceManagerContract, StartsAndStops) {
  ASSERT_NE(manager_, nullptr);
  ASSERT_NE(service_, nullptr);
  EXPECT_EQ(State(), kServiceStopped);
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
    EXPECT_TRUE(Reaches(kServiceRunning));
    ServiceStatus status;
    EXPECT_TRUE(services().RequestStop(service_, status));
    EXPECT_TRUE(Reaches(kServiceStopped));
  }
}

TEST_P(ServiceManagerContract, TellsWhenTheServicesProcessWasCreated) {
  const std::int64_t before = GetParam() ? clock_.Now() : std::time(nullptr);
  ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
  ASSERT_TRUE(Reaches(kServiceRunning));
  const std::int64_t after = GetParam() ? clock_.Now() : std::time(nullptr);
  ServiceStatus status;
  ASSERT_TRUE(services().QueryStatus(service_, status));
  EXPECT_NE(status.process_id, 0U);
  const ServiceManager::Handle process = services().OpenServiceProcess(status.process_id);
  ASSERT_NE(process, nullptr);
  std::int64_t created = 0;
  EXPECT_TRUE(services().CreationTime(process, created));
  EXPECT_GE(created, before);
  EXPECT_LE(created, after);
  services().CloseProcess(process);
}

TEST_P(ServiceManagerContract, KnowsNoOtherService) {
  EXPECT_EQ(services().OpenNamed(manager_, "other", service_access::kQueryStatus), nullptr);
  EXPECT_EQ(services().LastErrorText(), "There is no service 'other'.");
}

INSTANTIATE_TEST_SUITE_P(SystemAndFake, ServiceManagerContract, testing::Bool(),
                         [](const auto& row) { return row.param ? "Fake" : "System"; });

// What only the daemon that is a process does.
class ProcessDaemon : public ServiceManagerContract {};

TEST_P(ProcessDaemon, GivesItsLastWordsAsTheReason) {
  SetEnvironment("KELSD_TEST_DAEMON", "fails");
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_EQ(services().LastErrorText(), "port 427 is taken");
  ServiceStatus status;
  EXPECT_TRUE(services().QueryStatus(service_, status));
  EXPECT_EQ(status, (ServiceStatus{.current_state = kServiceStopped, .exit_code = 3}));
}

TEST_P(ProcessDaemon, ThatDoesNotExistIsTheReason) {
  SetEnvironment("KELSD_SLPD", folder_.Path("nothing"));
  EXPECT_FALSE(services().RequestStart(service_));
  EXPECT_NE(services().LastErrorText().find("nothing"), std::string::npos) << services().LastErrorText();
}

TEST_P(ProcessDaemon, ThatWasKilledDoesNotRun) {
  ASSERT_TRUE(services().RequestStart(service_)) << services().LastErrorText();
  ServiceStatus status;
  ASSERT_TRUE(services().QueryStatus(service_, status));
  ASSERT_EQ(status.current_state, kServiceRunning);
  kill(static_cast<pid_t>(status.process_id), SIGKILL);
  EXPECT_TRUE(Reaches(kServiceStopped));
  EXPECT_EQ(services().OpenServiceProcess(status.process_id), nullptr);
  ServiceStatus stopped;
  EXPECT_FALSE(services().RequestStop(service_, stopped));
}

INSTANTIATE_TEST_SUITE_P(System, ProcessDaemon, testing::Values(false));

}  // namespace
}  // namespace kelsd::platform
