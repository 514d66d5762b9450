#include "net/deadline.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

using namespace std::chrono_literals;

class DeadlineTest : public testing::Test {
 protected:
  std::chrono::steady_clock::time_point now_{1h};
  const SteadyClock clock_ = [this] { return now_; };
};

TEST_F(DeadlineTest, CountsDownToZero) {
  const Deadline deadline(clock_, 100ms);
  EXPECT_EQ(deadline.Remaining(), 100ms);
  EXPECT_FALSE(deadline.Passed());
  now_ += 99ms + 1us;
  EXPECT_EQ(deadline.Remaining(), 1ms);
  EXPECT_FALSE(deadline.Passed());
  now_ += 999us;
  EXPECT_EQ(deadline.Remaining(), 0ms);
  EXPECT_TRUE(deadline.Passed());
  now_ += 1h;
  EXPECT_EQ(deadline.Remaining(), 0ms);
}

TEST_F(DeadlineTest, WithinIsNeverLater) {
  const Deadline deadline(clock_, 100ms);
  EXPECT_EQ(deadline.Within(30ms).Remaining(), 30ms);
  EXPECT_EQ(deadline.Within(500ms).Remaining(), 100ms);
  now_ += 200ms;
  EXPECT_TRUE(deadline.Within(30ms).Passed());
}

TEST_F(DeadlineTest, PostponingGivesMoreTime) {
  Deadline deadline(clock_, 100ms);
  now_ += 150ms;
  deadline.Postpone(70ms);
  EXPECT_FALSE(deadline.Passed());
  EXPECT_EQ(deadline.Remaining(), 20ms);
}

}  // namespace
}  // namespace slp
