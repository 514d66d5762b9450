#include "slpd/server/process_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "agent/slpd_server/waiting_process.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// Its parameter: of how many processes the system gives notice.
class ProcessWatchTest : public testing::TestWithParam<std::size_t> {
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

INSTANTIATE_TEST_SUITE_P(Methods, ProcessWatchTest, testing::Values(ProcessWatch::kMostNotices, 0),
                         [](const auto& instance) { return instance.param == 0 ? "Polled" : "Notified"; });

TEST(ProcessWatchLimitTest, FurtherProcessesAreLookedFor) {
  asio::io_context io;
  std::vector<std::uint32_t> ended;
  int looks = 0;
  ProcessWatch watch(
      io, [&ended](std::uint32_t process_id) { ended.push_back(process_id); }, 1,
      [&looks] {
        ++looks;
        return ProcessesNow::Look();
      });
  WaitingProcess first;
  WaitingProcess second;
  WaitingProcess third;
  ASSERT_TRUE(watch.Watch(first.id()));
  EXPECT_EQ(looks, 0);
  ASSERT_TRUE(watch.Watch(second.id()));
  ASSERT_TRUE(watch.Watch(third.id()));
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(watch.watched(), 3U);
  second.Kill();
  while (ended.empty() && io.run_one_for(std::chrono::seconds(20)) > 0) {
  }
  EXPECT_THAT(ended, ElementsAre(second.id()));
  EXPECT_EQ(looks, 3) << "the first look after its end tells it";
  first.Kill();
  third.Kill();
  io.run_for(std::chrono::seconds(20));
  EXPECT_THAT(ended, UnorderedElementsAre(first.id(), second.id(), third.id()));
  EXPECT_EQ(watch.watched(), 0U);
}

/// What a test says of the processes.
struct Told {
  bool known = true;
  std::map<std::uint32_t, std::string> identities;
};

class ToldProcesses : public ProcessesNow {
 public:
  explicit ToldProcesses(const Told& told) : told_(told) {}
  bool known() const override { return told_.known; }
  std::optional<std::string> IdentityOf(std::uint32_t process_id) const override {
    const auto found = told_.identities.find(process_id);
    return found == told_.identities.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  const Told& told_;
};

class UnknownProcessesTest : public testing::Test {
 protected:
  /// Until the processes have been looked at once more.
  void NextLook() {
    const int before = looks_;
    while (looks_ == before && io_.run_one_for(std::chrono::seconds(20)) > 0) {
    }
  }

  asio::io_context io_;
  Told told_;
  int looks_ = 0;
  std::vector<std::uint32_t> ended_;
  ProcessWatch watch_{io_, [this](std::uint32_t process_id) { ended_.push_back(process_id); }, 0,
                      [this] {
                        ++looks_;
                        return std::make_unique<ToldProcesses>(told_);
                      }};
};

TEST_F(UnknownProcessesTest, AreKeptUntilTheSystemSaysThatTheyAreGone) {
  told_.known = false;
  EXPECT_TRUE(watch_.Watch(11));
  NextLook();
  EXPECT_THAT(ended_, IsEmpty());
  told_ = {true, {{11, "eleven"}}};
  NextLook();
  told_.known = false;
  told_.identities.clear();
  NextLook();
  EXPECT_THAT(ended_, IsEmpty());
  told_.known = true;
  NextLook();
  EXPECT_THAT(ended_, ElementsAre(11));
}

TEST_F(UnknownProcessesTest, OneThatComesToHaveANumberLaterIsAnotherOne) {
  told_.identities = {{11, ""}, {12, "twelve"}, {13, "thirteen"}};
  for (const std::uint32_t process_id : {11U, 12U, 13U}) {
    ASSERT_TRUE(watch_.Watch(process_id));
  }
  told_.identities = {{11, "eleven"}, {12, ""}, {13, "another"}};
  NextLook();
  EXPECT_THAT(ended_, ElementsAre(13));
  told_.identities = {{11, "another"}, {12, "twelve"}};
  NextLook();
  EXPECT_THAT(ended_, ElementsAre(13, 11));
}

}  // namespace
}  // namespace slp
