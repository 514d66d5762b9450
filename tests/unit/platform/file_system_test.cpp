#include "platform/file_system.h"

#include <gtest/gtest.h>

#include <string>

#include "support/fake_platform/temporary_folder.h"

namespace kelsd::platform {
namespace {

TEST(FileSystem, TellsFilesFromFolders) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "");
  const std::string inner = folder.Path("folder");
  EXPECT_TRUE(CreateFolder(inner));
  EXPECT_FALSE(CreateFolder(inner));
  EXPECT_FALSE(CreateFolder(folder.Path("no/folder")));
  EXPECT_TRUE(FileExists(file));
  EXPECT_FALSE(FolderExists(file));
  EXPECT_FALSE(FileExists(inner));
  EXPECT_TRUE(FolderExists(inner));
  for (const std::string& nothing : {folder.Path("nothing"), std::string()}) {
    EXPECT_FALSE(FileExists(nothing));
    EXPECT_FALSE(FolderExists(nothing));
  }
}

TEST(FileSystem, CreatesEmptyFilesAndLeavesOthersAlone) {
  const TemporaryFolder folder;
  const std::string file = folder.Path("file");
  EXPECT_TRUE(CreateEmptyFile(file));
  EXPECT_EQ(folder.Read("file"), "");
  folder.Write("file", "text");
  EXPECT_TRUE(CreateEmptyFile(file));
  EXPECT_EQ(folder.Read("file"), "text");
  EXPECT_FALSE(CreateEmptyFile(folder.Path("no/file")));
  EXPECT_FALSE(CreateEmptyFile(""));
}

}  // namespace
}  // namespace kelsd::platform
