#include "properties/file_stamp.h"

#include <gtest/gtest.h>

#include "agent/properties/temporary_files.h"

namespace slp {
namespace {

TEST(FileStampTest, IsNoneSoThatEachFileIsRead) {
  const TemporaryFiles folder;
  const std::string path = folder.Write("file", "some text");
  EXPECT_FALSE(StampOf(path));
  EXPECT_FALSE(StampOf(folder.Path("missing")));
  EXPECT_FALSE(IsUnchanged(StampOf(path), StampOf(path)));
}

}  // namespace
}  // namespace slp
