#include "slpd/server/windows/service_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <cstdlib>
#include <filesystem>

namespace slp {
namespace {

using testing::ElementsAre;

// What the system makes of a command line.
std::vector<std::string> TakenApart(const std::string& command) {
  int count = 0;
  wchar_t** const parts = CommandLineToArgvW(std::wstring(command.begin(), command.end()).c_str(), &count);
  std::vector<std::string> arguments;
  for (int i = 0; i < count; ++i) {
    const std::wstring part = parts[i];
    std::string argument;
    for (const wchar_t character : part) {
      argument += static_cast<char>(character);
    }
    arguments.push_back(argument);
  }
  LocalFree(parts);
  return arguments;
}

std::string InCurrentFolder(const std::string& name) {
  return (std::filesystem::current_path() / name).string();
}

class ServiceCommand : public testing::Test {
 protected:
  ServiceCommand() { _putenv("OpenSLPConfig="); }
};

TEST_F(ServiceCommand, IsTakenApartIntoTheSameArguments) {
  const std::vector<std::vector<std::string>> rows = {
      {"C:\\slpd.exe"},
      {"C:\\Program Files\\slp\\slpd.exe", "run"},
      {"slpd", "", "a b", "\t", "plain"},
      {"slpd", "say \"hello\"", "\"", "\\\"", "C:\\folder\\", "C:\\a folder\\", "a\\\\b c\\\\"},
  };
  for (const std::vector<std::string>& row : rows) {
    EXPECT_EQ(TakenApart(JoinArguments(row)), row) << JoinArguments(row);
  }
}

TEST_F(ServiceCommand, AlwaysQuotesTheProgram) {
  EXPECT_EQ(JoinArguments({"C:\\slpd.exe", "run"}), "\"C:\\slpd.exe\" run");
}

TEST_F(ServiceCommand, RunsWithNothingButWhatIsGiven) {
  EXPECT_THAT(ServiceArguments("p", {}), ElementsAre("p", "run"));
}

TEST_F(ServiceCommand, HoldsEveryOptionAndFullPaths) {
  const CommandLine line{.verb = Verb::kInstall,
                         .config_file = "conf",
                         .registration_file = "folder\\reg",
                         .log_file = "C:\\log file",
                         .pid_file = "pid",
                         .properties = {{"net.slp.port", "4270"}, {"net.slp.useScopes", "a b"}}};
  EXPECT_THAT(ServiceArguments("p", line),
              ElementsAre("p", "run", "--config", InCurrentFolder("conf"), "--regfile",
                          InCurrentFolder("folder\\reg"), "--log", "C:\\log file", "--pidfile",
                          InCurrentFolder("pid"), "--property", "net.slp.port=4270", "--property",
                          "net.slp.useScopes=a b"));
}

TEST_F(ServiceCommand, TakesTheFileOfTheEnvironmentWhenNoneIsGiven) {
  _putenv("OpenSLPConfig=C:\\of the environment");
  EXPECT_THAT(ServiceArguments("p", {}), ElementsAre("p", "run", "--config", "C:\\of the environment"));
  CommandLine line;
  line.config_file = "C:\\given";
  EXPECT_THAT(ServiceArguments("p", line), ElementsAre("p", "run", "--config", "C:\\given"));
}

TEST_F(ServiceCommand, NamesThisProgram) {
  EXPECT_TRUE(std::filesystem::equivalent(OwnProgram(), testing::internal::GetArgvs().front()))
      << OwnProgram();
}

}  // namespace
}  // namespace slp
