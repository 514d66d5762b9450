// The configuration file on Windows: where it is proposed to lie, and who may have it open beside the
// library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <array>
#include <chrono>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "kelsd/CKelSLPService.h"
#include "support/free_port.h"
#include "support/host_daemon/host_daemon.h"
#include "support/machine_delay.h"
#include "support/same_result.h"

namespace kelsd {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using testing::HasSubstr;

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";
constexpr const char* kUrl = "service:zdrest.tamro:http://127.0.0.1:8080";

auto Succeeded() {
  return SameResult(SResult(SResult::ERR_SUCCESS));
}

/// The file held open by one writer, who lets others read.
class Held {
 public:
  explicit Held(const std::string& file)
      : handle_(CreateFileA(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { CloseHandle(handle_); }

 private:
  const HANDLE handle_;
};

class ConfigurationFile : public testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(file_) << "net.slp.interfaces = 127.0.0.1\nnet.slp.port = " << slp::support::FreePort()
                         << "\nnet.slp.useScopes = TAMRO\n";
    ASSERT_THAT(CKelSLP::Initialize(), Succeeded());
  }
  void TearDown() override {
    EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(INT_MAX), Succeeded());
  }

  static SResult Register(const std::vector<std::string>& scopes) {
    return CKelSLPService::RegisterService(kUrl, 300, std::map<std::string, std::string>(), scopes);
  }

  const support::HostDaemon daemon_;
  const std::string file_ = daemon_.File("slp.conf");
};

TEST_F(ConfigurationFile, IsProposedInTheFolderOfAllUsersWhenTheVariableIsMissing) {
  std::array<char, MAX_PATH> folder{};
  ASSERT_EQ(SHGetFolderPathA(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder.data()),
            S_OK);
  EXPECT_EQ(std::string(folder.data()), "C:\\ProgramData");
  _putenv("OpenSLPConfig=");
  EXPECT_THAT(Register({}),
              SameResult(SResult(
                  SResult::ERR_ENV_NOT_SET,
                  "Create an environment variable with name 'OpenSLPConfig' that contains the path to the "
                  "SLP configuration file e.g. 'C:\\ProgramData\\slp\\slp.conf'.",
                  kAgent + "RegisterService " + kAgent + "ValidateSLPEnvironmentConfigFile " + kAgent +
                      "GetSLPEnvConfigFileName")));
}

TEST_F(ConfigurationFile, IsReadByTheServiceWhileAWriterHasIt) {
  const Held held(file_);
  ASSERT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_THAT(support::FileContent(daemon_.File("slpd.log")), HasSubstr("scopes TAMRO"));
  EXPECT_THAT(Register({"tamro"}), Succeeded());
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPService::GetSLPServiceConfig(config, errors), Succeeded());
  EXPECT_EQ(config.GetUseScopes(), std::vector<std::string>{"TAMRO"});
}

TEST_F(ConfigurationFile, KeepsASecondWriterWaitingForTwoSeconds) {
  const std::string before = support::FileContent(file_);
  const Held held(file_);
  support::MachineDelay delay;
  const auto start = steady_clock::now();
  EXPECT_THAT(Register({"lab"}),
              SameResult(SResult(SResult::ERR_CONF_OPEN, file_,
                                 kAgent + "RegisterService " + kAgent + "SetLocalScopes ")));
  const auto took = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  EXPECT_GT(took, milliseconds(2000));
  EXPECT_LT(took, milliseconds(3500) + delay.Allowance());
  EXPECT_EQ(support::FileContent(file_), before);
}

TEST_F(ConfigurationFile, IsWrittenByASecondWriterWhoWaitedLongEnough) {
  auto held = std::make_unique<Held>(file_);
  std::jthread first([&held] {
    std::this_thread::sleep_for(milliseconds(500));
    held.reset();
  });
  EXPECT_THAT(Register({"lab"}), Succeeded());
  EXPECT_THAT(support::FileContent(file_), HasSubstr("net.slp.useScopes = TAMRO,LAB\r\n"));
}

}  // namespace
}  // namespace kelsd
