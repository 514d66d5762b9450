// A system that has descriptors of processes, but can't wait for any more of them.
#include "slpd/server/processes.h"

#include <gtest/gtest.h>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <asio/io_context.hpp>
#include <cerrno>

#include "agent/slpd_server/waiting_process.h"
#include "slpd/server/process_watch.h"
#include "support/open_descriptors/open_descriptors.h"

namespace {

bool no_more_waits = false;

}  // namespace

// In the place of the C library's, for this program.
extern "C" int epoll_ctl(int epoll, int operation, int descriptor, epoll_event* event) noexcept {
  if (no_more_waits && operation == EPOLL_CTL_ADD) {
    errno = ENOSPC;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_epoll_ctl, epoll, operation, descriptor, event));
}

namespace slp {
namespace {

using kelsd::support::OpenDescriptors;

class NoMoreWaitsTest : public testing::Test {
 protected:
  ~NoMoreWaitsTest() override { no_more_waits = false; }

  WaitingProcess process_;
  asio::io_context io_;
};

TEST_F(NoMoreWaitsTest, ThereIsNoNoticeAndNoDescriptorIsLeftOpen) {
  ASSERT_NE(ProcessNotice::Order(io_, process_.id()), nullptr);
  const std::ptrdiff_t before = OpenDescriptors();
  no_more_waits = true;
  EXPECT_EQ(ProcessNotice::Order(io_, process_.id()), nullptr);
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(NoMoreWaitsTest, TheProcessIsLookedFor) {
  std::vector<std::uint32_t> ended;
  ProcessWatch watch(io_, [&ended](std::uint32_t process_id) { ended.push_back(process_id); });
  no_more_waits = true;
  ASSERT_TRUE(watch.Watch(process_.id()));
  process_.Kill();
  io_.run_for(std::chrono::seconds(20));
  EXPECT_EQ(ended, std::vector<std::uint32_t>{process_.id()});
}

}  // namespace
}  // namespace slp
