// The real service under the service control manager: what the library tells of it, and what becomes of
// registered services when it starts anew.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <climits>
#include <ctime>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "kelsd/CKelSLPService.h"
#include "platform/service_manager.h"
#include "support/free_port.h"
#include "support/host_daemon/host_daemon.h"
#include "support/host_daemon/windows/slpd_service.h"
#include "support/same_result.h"
#include "support/wait_until.h"

namespace kelsd {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::WaitUntil;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";
constexpr const char* kType = "service:zdrest.tamro:http";
constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";
// What a machine that is busy with other things may add to any time.
constexpr seconds kSlack{10};

auto Succeeded() {
  return SameResult(SResult(SResult::ERR_SUCCESS));
}

std::vector<std::string> Found() {
  std::vector<SKelServiceSearchResult> services;
  const SResult result = CKelSLPClient::FindServices(services, kType, {}, "", "127.0.0.1");
  std::vector<std::string> urls;
  for (const SKelServiceSearchResult& service : services) {
    urls.push_back(service.URL);
  }
  return result.IsOk() ? urls : std::vector<std::string>{result.ToString()};
}

class RealService : public testing::Test {
 protected:
  void SetUp() override {
    WriteScopes("TAMRO");
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  }
  void TearDown() override {
    EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
  }

  void WriteScopes(const std::string& scopes) const {
    std::ofstream(daemon_.File("slp.conf")) << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << port_
                                            << "\nnet.slp.useScopes = " << scopes << "\n";
  }

  std::string Log() const { return support::FileContent(daemon_.File("slpd.log")); }

  static SResult Register() {
    return CKelSLPService::RegisterService(kUrl, 300, std::map<std::string, std::string>(), {});
  }

  const support::HostDaemon daemon_;
  const std::uint16_t port_ = slp::support::FreePort();
};

TEST_F(RealService, RunsInAProcessWhoseStartTheSystemKnows) {
  platform::ServiceManager& services = platform::SystemServices();
  const auto now = [] { return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()); };
  const std::time_t before = now();
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  const std::time_t after = now();

  const auto manager = services.OpenManager(platform::service_access::kManagerReadControl);
  const auto service = services.OpenNamed(manager, "slpd", platform::service_access::kQueryStatus);
  platform::ServiceStatus status;
  ASSERT_TRUE(services.QueryStatus(service, status)) << services.LastErrorText();
  EXPECT_EQ(status.current_state, platform::kServiceRunning);
  EXPECT_EQ(status.process_id, daemon_.ProcessId());
  const auto process = services.OpenServiceProcess(status.process_id);
  std::int64_t created = 0;
  ASSERT_TRUE(services.CreationTime(process, created)) << services.LastErrorText();
  EXPECT_GE(created, before);
  EXPECT_LE(created, after);
  services.CloseProcess(process);
  services.CloseManaged(service);
  services.CloseManaged(manager);
}

TEST_F(RealService, MayNotBeStartedByAHandleThatOnlyAsks) {
  platform::ServiceManager& services = platform::SystemServices();
  const auto manager = services.OpenManager(platform::service_access::kManagerReadControl);
  const auto service = services.OpenNamed(manager, "slpd", platform::service_access::kQueryStatus);
  ASSERT_NE(service, nullptr) << services.LastErrorText();
  EXPECT_FALSE(services.RequestStart(service));
  EXPECT_EQ(services.LastErrorText(), support::SystemMessage(ERROR_ACCESS_DENIED));
  services.CloseManaged(service);
  services.CloseManaged(manager);
}

TEST_F(RealService, TellsByItsExitCodeThatItCouldNotStart) {
  asio::io_context io;
  const asio::ip::udp::socket taken(io, {asio::ip::make_address("127.0.0.1"), port_});
  const asio::ip::tcp::acceptor taken_too(io, {asio::ip::make_address("127.0.0.1"), port_}, false);
  EXPECT_THAT(
      CKelSLPService::StartSLPD(),
      SameResult(SResult(SResult::ERR_SLPD_START,
                         "Service did not start up. Current State: 1. Exit Code: 1066. Check Point: 0. "
                         "Wait Hint: 0.",
                         kAgent + "StartSLPD ")));
  EXPECT_EQ(support::SlpdServiceStatus().dwServiceSpecificExitCode, 1U);
  EXPECT_THAT(Log(), HasSubstr("problem cannot serve UDP 127.0.0.1:" + std::to_string(port_)));
}

TEST_F(RealService, ReadsItsSettingsAnewWhenAParameterHasChanged) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  const unsigned long process = daemon_.ProcessId();
  WriteScopes("TAMRO,LAB");
  ASSERT_TRUE(support::ControlSlpdService(SERVICE_CONTROL_PARAMCHANGE)) << GetLastError();
  EXPECT_TRUE(WaitUntil(
      [&] {
        return Log().find("slpd: reloaded, serving 127.0.0.1:" + std::to_string(port_) +
                          ", scopes TAMRO,LAB") != std::string::npos;
      },
      kSlack))
      << Log();
  EXPECT_EQ(daemon_.ProcessId(), process);
}

TEST_F(RealService, AnswersControlsThatItDoesNotKnow) {
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_TRUE(support::ControlSlpdService(SERVICE_CONTROL_INTERROGATE)) << GetLastError();
  EXPECT_FALSE(support::ControlSlpdService(SERVICE_CONTROL_PAUSE));
  EXPECT_EQ(support::SlpdServiceStatus().dwCurrentState, static_cast<DWORD>(SERVICE_RUNNING));
}

TEST_F(RealService, HasAllServicesAgainAsSoonAsTheLibraryHasStartedIt) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
  ASSERT_THAT(Register(), Succeeded()) << "starts it";
  ASSERT_THAT(Found(), ElementsAre(kUrl));
  ASSERT_THAT(CKelSLPService::StopSLPD(), Succeeded());
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_THAT(Found(), ElementsAre(kUrl));
}

TEST_F(RealService, HasAllServicesAgainAfterAnotherStartedIt) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(500), Succeeded());
  ASSERT_THAT(Register(), Succeeded());
  // Only whole seconds tell a start from a registration.
  std::this_thread::sleep_for(milliseconds(1100));
  support::TerminateSlpdService();
  // The watchdog may be quicker.
  try {
    support::StartSlpdService();
  } catch (const std::runtime_error&) {
    EXPECT_NE(support::SlpdServiceStatus().dwCurrentState, static_cast<DWORD>(SERVICE_STOPPED));
  }
  EXPECT_TRUE(WaitUntil([] { return Found() == std::vector<std::string>{kUrl}; }, kSlack));
}

TEST_F(RealService, ComesBackWithAllServicesWhenItsProcessWasKilled) {
  ASSERT_THAT(CKelSLPService::SetRegistrationCheckInterval(500), Succeeded());
  ASSERT_THAT(Register(), Succeeded());
  const unsigned long killed = daemon_.ProcessId();
  daemon_.Kill();
  EXPECT_TRUE(WaitUntil([] { return Found() == std::vector<std::string>{kUrl}; }, kSlack));
  EXPECT_NE(daemon_.ProcessId(), killed);
  EXPECT_EQ(daemon_.Starts(), 2);
}

}  // namespace
}  // namespace kelsd
