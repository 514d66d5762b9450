#include "platform/service_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <ctime>

#include "platform/windows/system_error.h"

namespace kelsd::platform {
namespace {

// A service that every Windows system has.
constexpr const char* kKnown = "RpcSs";

class WindowsServiceManager : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(manager_, nullptr) << services_.LastErrorText(); }
  ~WindowsServiceManager() override {
    if (service_ != nullptr) {
      services_.CloseManaged(service_);
    }
    services_.CloseManaged(manager_);
  }

  ServiceManager& services_ = SystemServices();
  const ServiceManager::Handle manager_ = services_.OpenManager(service_access::kManagerReadControl);
  ServiceManager::Handle service_ = nullptr;
};

TEST_F(WindowsServiceManager, TellsThatThereIsNoSuchService) {
  service_ = services_.OpenNamed(manager_, "kelsd-no-such-service", service_access::kQueryStatus);
  const std::string text = services_.LastErrorText();
  EXPECT_EQ(service_, nullptr);
  EXPECT_EQ(text, SystemErrorText(ERROR_SERVICE_DOES_NOT_EXIST));
}

TEST_F(WindowsServiceManager, TellsTheStatusThatTheSystemTells) {
  service_ = services_.OpenNamed(manager_, kKnown, service_access::kQueryStatus);
  ASSERT_NE(service_, nullptr) << services_.LastErrorText();
  ServiceStatus status;
  ASSERT_TRUE(services_.QueryStatus(service_, status)) << services_.LastErrorText();
  SERVICE_STATUS expected{};
  ASSERT_NE(QueryServiceStatus(static_cast<SC_HANDLE>(service_), &expected), 0);
  EXPECT_EQ(status, (ServiceStatus{expected.dwCurrentState, expected.dwWin32ExitCode, expected.dwCheckPoint,
                                   expected.dwWaitHint, status.process_id}));
}

TEST_F(WindowsServiceManager, AllowsNothingThatWasNotAskedFor) {
  service_ = services_.OpenNamed(manager_, kKnown, service_access::kQueryStatus);
  ASSERT_NE(service_, nullptr) << services_.LastErrorText();
  EXPECT_FALSE(services_.RequestStart(service_));
  EXPECT_EQ(services_.LastErrorText(), SystemErrorText(ERROR_ACCESS_DENIED));
  ServiceStatus status{.current_state = 99};
  EXPECT_FALSE(services_.RequestStop(service_, status));
  EXPECT_EQ(services_.LastErrorText(), SystemErrorText(ERROR_ACCESS_DENIED));
  EXPECT_EQ(status.current_state, 99U) << "unchanged";
}

TEST_F(WindowsServiceManager, FailsOnWhatIsNoService) {
  ServiceStatus status{.current_state = 99};
  EXPECT_FALSE(services_.QueryStatus(nullptr, status));
  EXPECT_EQ(services_.LastErrorText(), SystemErrorText(ERROR_INVALID_HANDLE));
  EXPECT_EQ(status.current_state, 99U) << "unchanged";
}

TEST_F(WindowsServiceManager, TellsWhenAProcessWasCreated) {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  const auto process = services_.OpenServiceProcess(GetCurrentProcessId());
  ASSERT_NE(process, nullptr) << services_.LastErrorText();
  std::int64_t created = 0;
  EXPECT_TRUE(services_.CreationTime(process, created)) << services_.LastErrorText();
  services_.CloseProcess(process);
  EXPECT_LE(created, now);
  // The time limit of every test.
  EXPECT_GE(created, now - 60);
}

TEST_F(WindowsServiceManager, TellsThatThereIsNoSuchProcess) {
  // Numbers of processes are multiples of four.
  const auto process = services_.OpenServiceProcess(0x7FFFFFF3);
  const std::string text = services_.LastErrorText();
  EXPECT_EQ(process, nullptr);
  EXPECT_EQ(text, SystemErrorText(ERROR_INVALID_PARAMETER));
  std::int64_t created = 99;
  EXPECT_FALSE(services_.CreationTime(nullptr, created));
  EXPECT_EQ(created, 99) << "unchanged";
}

}  // namespace
}  // namespace kelsd::platform
