#include "platform/posix/pid_file_probe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "support/fake_platform/temporary_folder.h"
#include "support/idle_process.h"

namespace kelsd::platform {
namespace {

// Comparable, and printed as a whole.
using Found = std::tuple<bool, bool, pid_t, std::int64_t, std::string>;

Found Probe(const std::string& name) {
  PidFileState state{.held = true, .pid = 7, .start_seconds = 8};
  std::string problem;
  const bool told = ProbePidFile(name, state, problem);
  return {told, state.held, state.pid, state.start_seconds, told ? "" : problem};
}

Found Nobody() {
  return {true, false, 0, 0, ""};
}

Found Unknown(const std::string& problem) {
  return {false, false, 0, 0, problem};
}

/// The daemon's hold on its file.
class Holder {
 public:
  explicit Holder(const std::string& name) : file_(open(name.c_str(), O_RDWR | O_CLOEXEC)) {
    EXPECT_EQ(flock(file_, LOCK_EX | LOCK_NB), 0);
  }
  ~Holder() { close(file_); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

 private:
  const int file_;
};

TEST(PidFileProbe, NobodyHoldsAFileThatDoesNotExist) {
  const TemporaryFolder folder;
  EXPECT_EQ(Probe(folder.Path("slpd.pid")), Nobody());
  EXPECT_EQ(Probe(folder.Path("missing") + "/slpd.pid"), Nobody());
}

TEST(PidFileProbe, APipeInItsPlaceIsNotWaitedFor) {
  const TemporaryFolder folder;
  const std::string name = folder.Path("slpd.pid");
  ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
  EXPECT_EQ(Probe(name), Nobody());
}

TEST(PidFileProbe, WhatAFileSaysThatNobodyHoldsDoesNotCount) {
  const TemporaryFolder folder;
  EXPECT_EQ(Probe(folder.Write("slpd.pid", "4711 1000000\n")), Nobody());
}

TEST(PidFileProbe, ReadsWhoHoldsTheFileAndSinceWhen) {
  struct Row {
    std::string content;
    pid_t pid;
    std::int64_t start;
  };
  const TemporaryFolder folder;
  const pid_t own = getpid();
  const std::string number = std::to_string(own);
  for (const Row& row : {
           Row{number + " 1000000\n", own, 1000000},
           Row{number + " 0\n", own, 0},
           Row{number + " 1000000\nand more", own, 1000000},
           // A daemon that still starts, or one that goes down, has written nothing that counts.
           Row{"", 0, 0},
           Row{number, 0, 0},
           Row{number + " ", 0, 0},
           Row{number + " 1000000", 0, 0},
           Row{number + "\n", 0, 0},
           Row{"0 1000000\n", 0, 0},
           Row{"-1 1000000\n", 0, 0},
           Row{"x 1000000\n", 0, 0},
           Row{number + " x\n", 0, 0},
           Row{"99999999999 1000000\n", 0, 0},
           Row{number + " 99999999999999999999\n", 0, 0},
       }) {
    const std::string name = folder.Write("slpd.pid", row.content);
    const Holder holder(name);
    EXPECT_EQ(Probe(name), Found(true, true, row.pid, row.start, "")) << row.content;
  }
}

// As after a daemon that was killed: the lock is somebody else's, and the number may be.
TEST(PidFileProbe, AProcessThatDoesNotHaveTheFileOpenIsNotItsHolder) {
  const TemporaryFolder folder;
  const support::IdleProcess stranger;
  const std::string name = folder.Write("slpd.pid", std::to_string(stranger.pid()) + " 1000000\n");
  const Holder holder(name);
  EXPECT_EQ(Probe(name), Found(true, true, 0, 0, ""));
}

TEST(PidFileProbe, TwoWhoLookAreNoDaemon) {
  const TemporaryFolder folder;
  const std::string name = folder.Write("slpd.pid", "4711 1000000\n");
  const int other = open(name.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_SH | LOCK_NB), 0);
  EXPECT_EQ(Probe(name), Nobody());
  close(other);
}

TEST(PidFileProbe, TellsWhyAFileCannotBeLookedAt) {
  const TemporaryFolder folder;
  const std::string below_a_file = folder.Write("file", "") + "/slpd.pid";
  EXPECT_EQ(Probe(below_a_file), Unknown(below_a_file + ": Not a directory"));
  const std::string circle = folder.Path("circle");
  std::filesystem::create_symlink(circle, circle);
  EXPECT_EQ(Probe(circle), Unknown(circle + ": Too many levels of symbolic links"));
  const std::string long_name = folder.Path(std::string(300, 'x'));
  EXPECT_EQ(Probe(long_name), Unknown(long_name + ": File name too long"));
}

}  // namespace
}  // namespace kelsd::platform
