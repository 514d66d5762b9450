#include "properties/file_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/properties/temporary_files.h"

namespace slp {
namespace {

TEST(ReadFileTextTest, ReadsFilesThatOpen) {
  const TemporaryFiles files;
  EXPECT_EQ(ReadFileText(files.Write("set.conf", "a=1\r\nb=2")), "a=1\r\nb=2");
  EXPECT_EQ(ReadFileText(files.Write("empty.conf", "")), "");
  const std::string large(100'000, '#');
  EXPECT_EQ(ReadFileText(files.Write("large.conf", large)), large);
  EXPECT_EQ(ReadFileText(files.Path("missing.conf")), std::nullopt);
  EXPECT_EQ(ReadFileText(files.Path("")), std::nullopt) << "a folder";
  EXPECT_EQ(ReadFileText(""), std::nullopt);
}

#ifdef __linux__
TEST(ReadFileTextTest, AFailureWhileItReadsIsNoText) {
  EXPECT_EQ(ReadFileText("/proc/self/mem"), std::nullopt) << "nothing lies at address 0";
}
#endif

}  // namespace
}  // namespace slp
