// Processes of other users, which may be looked at and waited for, but get no signal.
#include "slpd/server/process_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "agent/slpd_server/waiting_process.h"
#include "support/without_privileges.h"

namespace slp {
namespace {

using kelsd::support::WithoutPrivileges;
using testing::ElementsAre;

class OthersProcessesTest : public testing::TestWithParam<std::size_t> {
 protected:
  asio::io_context io_;
  std::vector<std::uint32_t> ended_;
  ProcessWatch watch_{io_, [this](std::uint32_t process_id) { ended_.push_back(process_id); }, GetParam()};
};

TEST_P(OthersProcessesTest, TheFirstOneIsWatched) {
  const WithoutPrivileges nobody;
  EXPECT_TRUE(watch_.Watch(1)) << "the first process of the system, which belongs to the administrator";
}

TEST_P(OthersProcessesTest, TheirEndIsTold) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "only the administrator can have processes of two users";
  }
  WaitingProcess process;
  {
    const WithoutPrivileges nobody;
    ASSERT_TRUE(watch_.Watch(process.id()));
  }
  process.Kill();
  const WithoutPrivileges nobody;
  io_.run_for(std::chrono::seconds(20));
  EXPECT_THAT(ended_, ElementsAre(process.id()));
}

INSTANTIATE_TEST_SUITE_P(Methods, OthersProcessesTest, testing::Values(ProcessWatch::kMostNotices, 0),
                         [](const auto& instance) { return instance.param == 0 ? "Polled" : "Notified"; });

}  // namespace
}  // namespace slp
