// Where a file that is open can be moved away.
#include "slpd/server/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using testing::MatchesRegex;

TEST(MovedLog, IsFollowedWhenOpenedAnew) {
  std::ostringstream stream;
  Log log(stream, [] { return std::chrono::system_clock::time_point(); });
  const TemporaryFolder folder;
  std::string problem;
  ASSERT_TRUE(log.Open(folder.File("log"), true, problem));
  log.Write(LogKind::kState, "one");
  std::filesystem::rename(folder.File("log"), folder.File("log.1"));
  ASSERT_TRUE(log.Open(folder.File("log"), true, problem));
  log.Write(LogKind::kState, "two");
  EXPECT_THAT(folder.Read("log.1"), MatchesRegex(".* state one\n"));
  EXPECT_THAT(folder.Read("log"), MatchesRegex(".* state two\n"));
}

}  // namespace
}  // namespace slp
