#include "service/folders.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file_system.h"
#include "support/fake_platform/temporary_folder.h"

namespace kelsd {
namespace {

TEST(Folders, AreThePartBeforeTheLastSeparator) {
  EXPECT_EQ(FolderOf("slp.conf"), "");
  EXPECT_EQ(FolderOf(""), "");
  EXPECT_EQ(FolderOf("a/slp.conf"), "a");
  EXPECT_EQ(FolderOf("/a/b/slp.conf"), "/a/b");
  EXPECT_EQ(FolderOf("/a//slp.conf"), "/a");
  EXPECT_EQ(FolderOf("/slp.conf"), "/");
  EXPECT_EQ(FolderOf("/a/"), "/a");
}

TEST(Folders, AreCreatedWithAllThatIsMissingAbove) {
  const TemporaryFolder folder;
  const std::string deep = folder.Path("one/two/three");
  EXPECT_TRUE(CreateMissingFolders(deep));
  EXPECT_TRUE(platform::FolderExists(deep));
  EXPECT_TRUE(CreateMissingFolders(deep));
  EXPECT_TRUE(CreateMissingFolders(""));
}

TEST(Folders, CannotBeCreatedBelowAFile) {
  const TemporaryFolder folder;
  folder.Write("file", "content");
  EXPECT_FALSE(CreateMissingFolders(folder.Path("file/one/two")));
  EXPECT_EQ(folder.Read("file"), "content");
}

}  // namespace
}  // namespace kelsd
