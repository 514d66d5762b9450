#include "slpd/server/pid_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using Outcome = PidFile::Outcome;

TEST(PidFile, IsEmptyUntilTheDaemonServes) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("pid", "4711 1\n");
  PidFile file;
  std::string problem;
  ASSERT_EQ(file.Lock(path, problem), Outcome::kLocked);
  EXPECT_EQ(folder.Read("pid"), "");
  EXPECT_TRUE(file.Announce(1'700'000'000));
  EXPECT_EQ(folder.Read("pid"), std::to_string(::getpid()) + " 1700000000\n");
}

TEST(PidFile, ASecondOneIsToldOfTheFirst) {
  const TemporaryFolder folder;
  PidFile first;
  std::string problem;
  ASSERT_EQ(first.Lock(folder.File("pid"), problem), Outcome::kLocked);
  ASSERT_TRUE(first.Announce(1));
  PidFile second;
  EXPECT_EQ(second.Lock(folder.File("pid"), problem), Outcome::kHeld);
  EXPECT_EQ(problem, "another slpd runs already: it holds the pid file " + folder.File("pid"));
  EXPECT_EQ(folder.Read("pid"), std::to_string(::getpid()) + " 1\n") << "the first one's content stays";
  EXPECT_FALSE(second.Announce(2));
}

TEST(PidFile, IsFreeAndEmptyAfterTheDaemonAndStaysThere) {
  const TemporaryFolder folder;
  std::string problem;
  {
    PidFile first;
    ASSERT_EQ(first.Lock(folder.File("pid"), problem), Outcome::kLocked);
    ASSERT_TRUE(first.Announce(1));
  }
  EXPECT_TRUE(std::filesystem::exists(folder.File("pid")));
  EXPECT_EQ(folder.Read("pid"), "");
  PidFile second;
  EXPECT_EQ(second.Lock(folder.File("pid"), problem), Outcome::kLocked);
}

TEST(PidFile, SaysWhyItCanNotBeOpened) {
  const TemporaryFolder folder;
  PidFile file;
  std::string problem;
  EXPECT_EQ(file.Lock(folder.File("missing/pid"), problem), Outcome::kFailed);
  EXPECT_EQ(problem,
            "cannot open the pid file " + folder.File("missing/pid") + ": No such file or directory");
}

TEST(PidFile, IsNeverWrittenThroughALink) {
  const TemporaryFolder folder;
  folder.Write("target", "precious");
  std::filesystem::create_symlink(folder.File("target"), folder.File("pid"));
  PidFile file;
  std::string problem;
  EXPECT_EQ(file.Lock(folder.File("pid"), problem), Outcome::kFailed);
  EXPECT_EQ(problem, "cannot open the pid file " + folder.File("pid") +
                         ": it is a symbolic link, which is not followed: name the file itself");
  EXPECT_EQ(folder.Read("target"), "precious");
}

TEST(PidFile, IsNeverAFileWithASecondName) {
  const TemporaryFolder folder;
  folder.Write("target", "precious");
  std::filesystem::create_hard_link(folder.File("target"), folder.File("pid"));
  {
    PidFile file;
    std::string problem;
    EXPECT_EQ(file.Lock(folder.File("pid"), problem), Outcome::kFailed);
    EXPECT_EQ(problem, "cannot open the pid file " + folder.File("pid") +
                           ": it has a second name (a hard link), so that it may be somebody else's file: "
                           "name another one, in a folder that nobody else may write");
  }
  EXPECT_EQ(folder.Read("target"), "precious");
}

TEST(PidFile, IsNeverAPipeOrDevice) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.File("pid").c_str(), 0666), 0);
  for (const std::string& path : {folder.File("pid"), std::string("/dev/null")}) {
    PidFile file;
    std::string problem;
    EXPECT_EQ(file.Lock(path, problem), Outcome::kFailed);
    EXPECT_EQ(problem, "cannot open the pid file " + path +
                           ": it is no regular file: name one, in a folder that nobody else may write");
  }
}

}  // namespace
}  // namespace slp
