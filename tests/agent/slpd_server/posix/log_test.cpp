// Where a file that is open can be moved away, and links, pipes and devices are everybody's.
#include "slpd/server/log.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using testing::EndsWith;
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

class PreparedLogTest : public testing::Test {
 protected:
  bool Open(const std::string& path, bool append = false) { return log_.Open(path, append, problem_); }

  std::ostringstream stream_;
  Log log_{stream_, [] { return std::chrono::system_clock::time_point(); }};
  const TemporaryFolder folder_;
  std::string problem_;
};

TEST_F(PreparedLogTest, AFileIsNeverWrittenThroughALink) {
  folder_.Write("target", "precious");
  std::filesystem::create_symlink(folder_.File("target"), folder_.File("log"));
  std::filesystem::create_symlink(folder_.File("missing"), folder_.File("dangling"));
  for (const bool append : {false, true}) {
    for (const char* const name : {"log", "dangling"}) {
      EXPECT_FALSE(Open(folder_.File(name), append));
      EXPECT_EQ(problem_, "cannot open the log file " + folder_.File(name) +
                              ": it is a symbolic link, which is not followed: name the file itself");
    }
  }
  EXPECT_EQ(folder_.Read("target"), "precious");
  EXPECT_FALSE(std::filesystem::exists(folder_.File("missing")));
  log_.Write(LogKind::kState, "here");
  EXPECT_THAT(stream_.str(), MatchesRegex(".* state here\n"));
}

TEST_F(PreparedLogTest, AFolderMayBeALink) {
  std::filesystem::create_directory(folder_.File("folder"));
  std::filesystem::create_directory_symlink(folder_.File("folder"), folder_.File("link"));
  ASSERT_TRUE(Open(folder_.File("link/log"))) << problem_;
  log_.Write(LogKind::kState, "one");
  EXPECT_THAT(folder_.Read("folder/log"), MatchesRegex(".* state one\n"));
}

TEST_F(PreparedLogTest, AFileWithASecondNameIsNeverWritten) {
  const std::string path = folder_.File("log");
  folder_.Write("target", "precious");
  std::filesystem::create_hard_link(folder_.File("target"), path);
  for (const bool append : {false, true}) {
    EXPECT_FALSE(Open(path, append));
    EXPECT_EQ(problem_, "cannot open the log file " + path +
                            ": it has a second name (a hard link), so that it may be somebody else's file: "
                            "name another one, in a folder that nobody else may write");
  }
  EXPECT_EQ(folder_.Read("target"), "precious");
  std::filesystem::remove(path);
  EXPECT_TRUE(Open(folder_.File("target"))) << problem_;
}

TEST_F(PreparedLogTest, APipeIsNeitherWaitedForNorWritten) {
  const std::string path = folder_.File("log");
  ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0);
  const std::string problem = "cannot open the log file " + path +
                              ": it is no regular file: name one, in a folder that nobody else may write";
  EXPECT_FALSE(Open(path));
  EXPECT_EQ(problem_, problem) << "nobody reads";
  const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  problem_.clear();
  EXPECT_FALSE(Open(path, true));
  EXPECT_EQ(problem_, problem) << "somebody reads";
  ::close(reader);
}

TEST_F(PreparedLogTest, ADeviceIsWritten) {
  for (const bool append : {false, true}) {
    EXPECT_TRUE(Open("/dev/null", append)) << problem_;
  }
  log_.Write(LogKind::kState, "one");
  EXPECT_EQ(stream_.str(), "");
}

TEST_F(PreparedLogTest, ATerminalThatIsStoppedCostsLinesAndNoTime) {
  const int other_end = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_GE(other_end, 0);
  ASSERT_EQ(::grantpt(other_end), 0);
  ASSERT_EQ(::unlockpt(other_end), 0);
  ASSERT_TRUE(Open(::ptsname(other_end))) << problem_;
  const std::string long_line(1000, 'x');
  for (int i = 0; i < 500; ++i) {
    log_.Write(LogKind::kState, long_line);  // nobody reads them
  }
  ASSERT_TRUE(Open(folder_.File("log"))) << problem_;
  ::close(other_end);
}

TEST_F(PreparedLogTest, WhoNamesAnOutputOfTheProgramIsToldWhereTheLogGoes) {
  for (const std::string path : {"/dev/stdout", "/dev/stderr"}) {
    EXPECT_FALSE(Open(path));
    EXPECT_THAT(problem_, EndsWith(": name the file itself; without --log the log goes to the error output"));
  }
}

TEST_F(PreparedLogTest, AFullDiskCostsOnlyWhatDoesNotFit) {
  ASSERT_TRUE(Open("/dev/full", true)) << problem_;
  log_.Write(LogKind::kState, "lost");
  ASSERT_TRUE(Open(folder_.File("log"))) << problem_;
  log_.Write(LogKind::kState, "one");
  EXPECT_THAT(folder_.Read("log"), MatchesRegex(".* state one\n"));
}

}  // namespace
}  // namespace slp
