#include "platform/known_folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>

namespace kelsd::platform {
namespace {

TEST(KnownFolders, AreThoseOfTheSystem) {
  std::array<char, MAX_PATH> windows{};
  ASSERT_GT(GetWindowsDirectoryA(windows.data(), static_cast<UINT>(windows.size())), 0U);
  std::array<char, MAX_PATH> data{};
  ASSERT_GT(GetEnvironmentVariableA("ProgramData", data.data(), static_cast<DWORD>(data.size())), 0U);
  // The same folder may be spelt in different cases.
  const auto system = SystemKnownFolders().System();
  ASSERT_TRUE(system.has_value());
  EXPECT_EQ(lstrcmpiA(system->c_str(), windows.data()), 0) << *system;
  const auto common = SystemKnownFolders().CommonData();
  ASSERT_TRUE(common.has_value());
  EXPECT_EQ(lstrcmpiA(common->c_str(), data.data()), 0) << *common;
}

TEST(KnownFolders, HaveReplacementsAndFiles) {
  EXPECT_STREQ(FallbackCommonData(), "C:\\Documents and Settings\\All Users\\Application Data");
  EXPECT_STREQ(FallbackSystem(), "%windir%");
  EXPECT_STREQ(EnvironmentConfigFileIn(), "\\slp\\slp.conf");
  EXPECT_STREQ(MainConfigFileIn(), "\\slp.conf");
}

}  // namespace
}  // namespace kelsd::platform
