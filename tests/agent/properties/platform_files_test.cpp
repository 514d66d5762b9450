#include "properties/platform_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "properties/properties.h"

namespace slp {
namespace {

TEST(PlatformFilesTest, GlobalFileIsTheOneOfThePlatform) {
  EXPECT_THAT(DefaultGlobalPropertyFile(),
              testing::AnyOf(testing::StrEq("/etc/slp.conf"), testing::EndsWith("\\slp.conf")));
}

TEST(PlatformFilesTest, EnvironmentVariablesAreRead) {
  EXPECT_NE(EnvironmentVariable("PATH"), "");
  EXPECT_EQ(EnvironmentVariable("KELSD_NO_SUCH_VARIABLE"), "");
}

TEST(PropertyFilesTest, DefaultNamesTheGlobalFileAndTheOneOfTheEnvironment) {
  const PropertyFiles files = PropertyFiles::Default();
  EXPECT_EQ(files.global, DefaultGlobalPropertyFile());
  EXPECT_EQ(files.environment, EnvironmentVariable("OpenSLPConfig"));
  EXPECT_EQ(files.application, "");
  EXPECT_FALSE(files.required);
}

}  // namespace
}  // namespace slp
