#include "service/reporting_lock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace kelsd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Lets a test be another thread that has waited for the lock and gets it the moment it is left.
class HandedOnLock {
 public:
  static inline std::function<void()> on_unlock = [] {};
  static inline bool is_taken = false;

  void lock() {}
  bool try_lock() { return !is_taken; }
  void unlock() { on_unlock(); }
};

class ReportingLockTest : public testing::Test {
 protected:
  ReportingLockTest() {
    HandedOnLock::on_unlock = [] {};
    HandedOnLock::is_taken = false;
    reports_.SetCallback([this](const std::string& url, const SResult&) { told_.push_back(url); });
  }

  static std::list<SDroppedService> Dropped(const std::string& url) {
    return {{url, SResult(SResult::ERR_PARSE_ERROR)}};
  }

  DroppedServiceReports reports_;
  ReportingLock<HandedOnLock> lock_{reports_};
  std::vector<std::string> told_;
};

TEST_F(ReportingLockTest, QueuesBeforeItIsLeft) {
  HandedOnLock::on_unlock = [&] {
    reports_.Add(Dropped("of the next holder"));
    reports_.Deliver();
  };
  {
    const std::lock_guard hold(lock_);
    lock_.Report(Dropped("first"));
    lock_.Report(Dropped("second"));
  }
  EXPECT_THAT(told_, ElementsAre("first", "second", "of the next holder"));
}

TEST_F(ReportingLockTest, QueuesAlsoWhatIsToldLaterBeforeItIsLeft) {
  HandedOnLock::on_unlock = [&] { reports_.Add(Dropped("of the next holder")); };
  {
    const std::lock_guard hold(lock_);
    lock_.ReportLater(Dropped("first"));
  }
  EXPECT_THAT(told_, IsEmpty());
  reports_.Deliver();
  EXPECT_THAT(told_, ElementsAre("first", "of the next holder"));
}

TEST_F(ReportingLockTest, TellsAfterItHasBeenLeft) {
  std::vector<std::string> told_at_unlock = {"not left"};
  HandedOnLock::on_unlock = [&] { told_at_unlock = told_; };
  {
    const std::lock_guard hold(lock_);
    lock_.Report(Dropped("a"));
  }
  EXPECT_THAT(told_at_unlock, IsEmpty());
  EXPECT_THAT(told_, ElementsAre("a"));
}

TEST_F(ReportingLockTest, TellsWhenTheOutermostHoldEnds) {
  {
    const std::lock_guard outer(lock_);
    {
      const std::unique_lock inner(lock_, std::try_to_lock);
      ASSERT_TRUE(inner.owns_lock());
      lock_.Report(Dropped("a"));
    }
    EXPECT_THAT(told_, IsEmpty());
  }
  EXPECT_THAT(told_, ElementsAre("a"));
}

TEST_F(ReportingLockTest, IsNotHeldAfterATryThatFailed) {
  HandedOnLock::is_taken = true;
  EXPECT_FALSE(lock_.try_lock());
  HandedOnLock::is_taken = false;
  {
    const std::lock_guard hold(lock_);
    lock_.Report(Dropped("a"));
  }
  EXPECT_THAT(told_, ElementsAre("a"));
}

TEST_F(ReportingLockTest, TellsEachReportOnce) {
  for (int i = 0; i < 2; ++i) {
    const std::lock_guard hold(lock_);
    lock_.Report(i == 0 ? Dropped("a") : std::list<SDroppedService>());
  }
  EXPECT_THAT(told_, ElementsAre("a"));
}

}  // namespace
}  // namespace kelsd
