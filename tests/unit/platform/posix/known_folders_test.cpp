#include "platform/known_folders.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kelsd::platform {
namespace {

TEST(KnownFolders, AreTheSystems) {
  EXPECT_EQ(SystemKnownFolders().CommonData(), std::optional<std::string>("/etc"));
  EXPECT_EQ(SystemKnownFolders().System(), std::optional<std::string>("/etc"));
}

}  // namespace
}  // namespace kelsd::platform
