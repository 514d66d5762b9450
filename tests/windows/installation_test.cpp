// Entering the service and removing it by slpd's own verbs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "kelsd/CKelSLPService.h"
#include "support/host_daemon/windows/slpd_service.h"
#include "support/run_program/run_program.h"
#include "support/same_result.h"

namespace kelsd {
namespace {

using support::ProgramRun;

std::string Program() {
  return std::filesystem::absolute(KELSD_SLPD_PROGRAM).make_preferred().string();
}

ProgramRun Slpd(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), Program());
  return support::RunProgram(arguments);
}

struct Entry {
  std::string command;
  std::string account;
  DWORD type = 0;
  DWORD start = 0;

  bool operator==(const Entry&) const = default;
};

void PrintTo(const Entry& entry, std::ostream* out) {
  *out << entry.command << ", " << entry.account << ", type " << entry.type << ", start " << entry.start;
}

Entry Entered() {
  const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT);
  const SC_HANDLE service = OpenServiceA(manager, "slpd", SERVICE_QUERY_CONFIG);
  alignas(QUERY_SERVICE_CONFIGA) std::array<BYTE, 8192> buffer{};
  auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGA*>(buffer.data());
  DWORD needed = 0;
  Entry entry;
  if (QueryServiceConfigA(service, config, static_cast<DWORD>(buffer.size()), &needed) != 0) {
    entry = {config->lpBinaryPathName, config->lpServiceStartName, config->dwServiceType,
             config->dwStartType};
  }
  CloseServiceHandle(service);
  CloseServiceHandle(manager);
  return entry;
}

bool EventSourceExists() {
  return RegGetValueA(HKEY_LOCAL_MACHINE, "SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\slpd",
                      "EventMessageFile", RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

class Installation : public testing::Test {
 protected:
  Installation() {
    support::RemoveSlpdService();
    _putenv("OpenSLPConfig=");
  }
  ~Installation() override { support::RemoveSlpdService(); }
};

TEST_F(Installation, EntersAServiceThatMayDoLittle) {
  const ProgramRun run = Slpd({"install", "--config", "C:\\some folder\\slp.conf", "--log", "C:\\slpd.log"});
  const std::string command =
      "\"" + Program() + "\" run --config \"C:\\some folder\\slp.conf\" --log C:\\slpd.log";
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output,
            "slpd: installed the service slpd, account NT AUTHORITY\\LocalService: " + command + "\n");
  EXPECT_EQ(Entered(),
            (Entry{command, "NT AUTHORITY\\LocalService", SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START}));
  EXPECT_TRUE(EventSourceExists());
}

TEST_F(Installation, RefusesToDoItTwice) {
  ASSERT_EQ(Slpd({"install"}).status, 0);
  const Entry before = Entered();
  const ProgramRun run = Slpd({"install", "--config", "C:\\other.conf"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error,
            "slpd: cannot install the service: there is a service slpd already: keep it, or remove it first, "
            "by slpd "
            "uninstall or (when it is another program's) sc delete slpd (1073)\n");
  EXPECT_EQ(Entered(), before);
}

TEST_F(Installation, RemovesWhatItEntered) {
  ASSERT_EQ(
      Slpd({"install", "--property", "net.slp.interfaces=127.0.0.1", "--property", "net.slp.port=19427"})
          .status,
      0);
  ASSERT_THAT(CKelSLPService::StartSLPD(), SameResult(SResult(SResult::ERR_SUCCESS))) << "it runs";
  const ProgramRun run = Slpd({"uninstall"});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output, "slpd: removed the service slpd\n");
  EXPECT_EQ(Entered(), Entry());
  EXPECT_FALSE(EventSourceExists());
}

TEST_F(Installation, SaysThatThereIsNothingToRemove) {
  const ProgramRun run = Slpd({"uninstall"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(
      run.error,
      "slpd: cannot uninstall the service: there is no service slpd, so there is nothing to remove (1060)\n");
}

TEST_F(Installation, RefusesBadSettings) {
  const ProgramRun run = Slpd({"install", "--property", "net.slp.MTU=many"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(Entered(), Entry()) << "a service that can't start is not entered";
}

}  // namespace
}  // namespace kelsd
