#include "platform/exclusive_file.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/file_system.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd::platform {
namespace {

class ExclusiveFileTest : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string name = folder.Path("file");
  bool created = false;
};

TEST_F(ExclusiveFileTest, TellsWhetherItCreatedTheFile) {
  EXPECT_NE(ExclusiveFile::Open(name, created), nullptr);
  EXPECT_TRUE(created);
  EXPECT_NE(ExclusiveFile::Open(name, created), nullptr);
  EXPECT_FALSE(created);
}

TEST_F(ExclusiveFileTest, KeepsSecondWritersOutButNotReaders) {
  folder.Write("file", "text");
  auto first = ExclusiveFile::Open(name, created);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(ExclusiveFile::Open(name, created), nullptr);
  EXPECT_EQ(folder.Read("file"), "text");
  first.reset();
  EXPECT_NE(ExclusiveFile::Open(name, created), nullptr);
}

TEST_F(ExclusiveFileTest, ReplacesByLongerShorterAndEmptyContent) {
  folder.Write("file", "text");
  const auto file = ExclusiveFile::Open(name, created);
  ASSERT_NE(file, nullptr);
  for (const std::string& content :
       {std::string(3U << 20U, 'x'), std::string("a\0b\r\n", 5), std::string()}) {
    EXPECT_TRUE(file->Replace(content));
    std::string read = "before";
    EXPECT_TRUE(file->Read(read));
    EXPECT_TRUE(read == content);
    EXPECT_TRUE(folder.Read("file") == content);
  }
}

TEST_F(ExclusiveFileTest, RemovesTheFileWithItself) {
  auto file = ExclusiveFile::Open(name, created);
  ASSERT_NE(file, nullptr);
  file->RemoveWhenClosed();
  EXPECT_TRUE(FileExists(name));
  file.reset();
  EXPECT_FALSE(FileExists(name));
  EXPECT_NE(ExclusiveFile::Open(name, created), nullptr);
  EXPECT_TRUE(created);
}

TEST_F(ExclusiveFileTest, CannotBeAFolderOrInNone) {
  EXPECT_EQ(ExclusiveFile::Open(folder.Path(""), created), nullptr);
  EXPECT_EQ(ExclusiveFile::Open(folder.Path("no/file"), created), nullptr);
  EXPECT_EQ(ExclusiveFile::Open("", created), nullptr);
}

}  // namespace
}  // namespace kelsd::platform
