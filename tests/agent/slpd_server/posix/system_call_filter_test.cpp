#include "slpd/server/posix/system_call_filter.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "support/slpd_process/slpd_process.h"

namespace slp {
namespace {

class SystemCallFilterTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!HasSystemCallFilter()) {
      GTEST_SKIP() << "built without libseccomp, or with sanitizers";
    }
  }
};

// What a process does under the filter: its exit status.
template <typename Deed>
int StatusOf(Deed deed) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int error = RefuseNeedlessSystemCalls();
    ::_exit(error != 0 ? 100 : deed());
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

TEST_F(SystemCallFilterTest, RefusesOtherPrograms) {
  EXPECT_EQ(StatusOf([] {
              ::execl("/bin/sh", "sh", "-c", "exit 7", nullptr);
              return errno;
            }),
            EPERM);
}

TEST_F(SystemCallFilterTest, RefusesTracing) {
  EXPECT_EQ(StatusOf([] { return ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 ? 0 : errno; }), EPERM);
}

TEST_F(SystemCallFilterTest, RefusesMounting) {
  EXPECT_EQ(StatusOf([] { return ::mount("none", "/nowhere", "tmpfs", 0, nullptr) == 0 ? 0 : errno; }),
            EPERM);
}

TEST_F(SystemCallFilterTest, RefusesToBecomeSomebodyElse) {
  EXPECT_EQ(StatusOf([] { return ::setuid(::geteuid()) == 0 ? 0 : errno; }), EPERM);
}

TEST_F(SystemCallFilterTest, LetsSocketsAndFilesBe) {
  EXPECT_EQ(StatusOf([] {
              std::ifstream file("/proc/self/status");
              return file && ::socket(AF_INET, SOCK_DGRAM, 0) >= 0 ? 0 : 1;
            }),
            0);
}

TEST_F(SystemCallFilterTest, HoldsForTheRunningDaemon) {
  support::SlpdProcess slpd;
  ASSERT_TRUE(slpd.Running()) << slpd.Log();
  std::ifstream file("/proc/" + std::to_string(slpd.process_id()) + "/status");
  std::string filters;
  for (std::string line; std::getline(file, line);) {
    if (line.compare(0, 8, "Seccomp:") == 0) {
      filters = line;
    }
  }
  EXPECT_EQ(filters, "Seccomp:\t2") << slpd.Log();
}

}  // namespace
}  // namespace slp
