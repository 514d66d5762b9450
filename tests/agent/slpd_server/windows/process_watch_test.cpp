// Processes that the daemon's account may not open: those of other accounts.
#include "slpd/server/process_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "agent/slpd_server/waiting_process.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using testing::ElementsAre;

TEST(OthersProcesses, AreLookedForWhereTheyMayNotBeWaitedFor) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << "Wine lets every process open every other one";
  }
  asio::io_context io;
  std::vector<std::uint32_t> ended;
  ProcessWatch watch(io, [&ended](std::uint32_t process_id) { ended.push_back(process_id); });
  WaitingProcess process(WaitingProcess::For::kNobody);
  ASSERT_EQ(::OpenProcess(SYNCHRONIZE, FALSE, process.id()), nullptr);
  ASSERT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
  ASSERT_TRUE(watch.Watch(process.id()));
  ASSERT_TRUE(watch.Watch(process.id()));
  EXPECT_EQ(watch.watched(), 1U);
  process.Kill();
  io.run_for(std::chrono::seconds(20));
  EXPECT_THAT(ended, ElementsAre(process.id()));
  EXPECT_TRUE(io.stopped());
}

}  // namespace
}  // namespace slp
