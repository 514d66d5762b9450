// In a network namespace of its own, made by a child process, so that the host's interfaces stay as they are.
#include "net/address_watch.h"

#include <gtest/gtest.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <string>

namespace slp {
namespace {

enum ChildStatus {
  kTold = 0,
  kNotTold = 1,
  kNoNamespace = 2,
  kNoLoopback = 3,
  kToldTooOften = 4,
  kToldTooEarly = 5
};

bool RaiseLoopback() {
  const int descriptor = ::socket(AF_INET, SOCK_DGRAM, 0);
  ifreq request{};
  std::string("lo").copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_flags = IFF_UP;
  const bool raised = ::ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
  ::close(descriptor);
  return raised;
}

ChildStatus WatchLoopbackComeUp() {
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
    return kNoNamespace;
  }
  asio::io_context io;
  int told = 0;
  AddressWatch watch(io, [&] {
    ++told;
    io.stop();
  });
  io.run_for(std::chrono::milliseconds(400));
  if (told != 0) {
    return kToldTooEarly;
  }
  if (!RaiseLoopback()) {
    return kNoLoopback;
  }
  io.restart();
  io.run_for(std::chrono::seconds(5));
  if (told == 0) {
    return kNotTold;
  }
  io.restart();
  io.run_for(std::chrono::milliseconds(400));
  return told == 1 ? kTold : kToldTooOften;
}

TEST(AddressWatch, TellsOnceThatAnInterfaceCameUp) {
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::_exit(WatchLoopbackComeUp());
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kNoNamespace) {
    GTEST_SKIP() << "this system doesn't let the test make a network namespace";
  }
  EXPECT_EQ(WEXITSTATUS(status), kTold);
}

}  // namespace
}  // namespace slp
