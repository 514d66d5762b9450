#include "slpd/server/process_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "agent/slpd_server/waiting_process.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProcessWatchTest : public testing::TestWithParam<ProcessWatch::Method> {
 protected:
  asio::io_context io_;
  std::vector<std::uint32_t> ended_;
  ProcessWatch watch_{io_, [this](std::uint32_t process_id) { ended_.push_back(process_id); }, GetParam()};
};

TEST_P(ProcessWatchTest, TellsOnceThatAProcessHasEndedEvenBeforeItIsReaped) {
  WaitingProcess child;
  ASSERT_TRUE(watch_.Watch(child.id()));
  ASSERT_TRUE(watch_.Watch(child.id()));
  EXPECT_EQ(watch_.watched(), 1U);
  child.Kill();
  io_.run_for(std::chrono::seconds(20));
  EXPECT_THAT(ended_, ElementsAre(child.id()));
  EXPECT_EQ(watch_.watched(), 0U);
  EXPECT_TRUE(io_.stopped()) << "nothing watched, nothing to do";
}

TEST_P(ProcessWatchTest, TellsOfEachProcessByItself) {
  WaitingProcess staying;
  WaitingProcess going;
  ASSERT_TRUE(watch_.Watch(staying.id()));
  ASSERT_TRUE(watch_.Watch(going.id()));
  going.Kill();
  while (ended_.empty() && io_.run_one_for(std::chrono::seconds(20)) > 0) {
  }
  EXPECT_THAT(ended_, ElementsAre(going.id()));
  EXPECT_EQ(watch_.watched(), 1U);
}

TEST_P(ProcessWatchTest, DoesNotWatchWhatDoesNotExist) {
  WaitingProcess child;
  child.Kill();
  child.Reap();
  EXPECT_FALSE(watch_.Watch(child.id()));
  EXPECT_FALSE(watch_.Watch(0));
  EXPECT_FALSE(watch_.Watch(std::numeric_limits<std::uint32_t>::max()));
  EXPECT_FALSE(watch_.Watch(std::numeric_limits<std::int32_t>::max()));
  EXPECT_EQ(watch_.watched(), 0U);
  io_.run();
  EXPECT_THAT(ended_, IsEmpty());
}

TEST_P(ProcessWatchTest, SaysNothingOfAForgottenProcess) {
  WaitingProcess child;
  ASSERT_TRUE(watch_.Watch(child.id()));
  watch_.Forget(child.id());
  child.Kill();
  io_.run_for(std::chrono::seconds(20));
  EXPECT_THAT(ended_, IsEmpty());
  EXPECT_TRUE(io_.stopped());
}

INSTANTIATE_TEST_SUITE_P(Methods, ProcessWatchTest,
                         testing::Values(ProcessWatch::Method::kNotified, ProcessWatch::Method::kPolled),
                         [](const auto& instance) {
                           return instance.param == ProcessWatch::Method::kNotified ? "Notified" : "Polled";
                         });

}  // namespace
}  // namespace slp
