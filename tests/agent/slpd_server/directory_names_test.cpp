#include "slpd/server/directory_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <sstream>

#include "agent/slpd_server/loop_thread.h"
#include "support/latch.h"
#include "support/wait_until.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Seconds kNever{100'000};

class DirectoryNamesTest : public testing::Test {
 protected:
  ~DirectoryNamesTest() override {
    loop_.Do([this] { names_.reset(); });
  }

  void Apply(const std::vector<std::string>& names, bool ipv6 = false, Seconds again = kNever) {
    loop_.Do([&] {
      if (!names_) {
        names_ = std::make_unique<DirectoryNames>(
            loop_.io(), log_, [this] { changed_.CountDown(); }, resolve_, first_retry_);
      }
      names_->Apply(names, ipv6, again);
    });
  }

  // Failures that went to the log.
  std::ptrdiff_t Told() {
    const std::string text = loop_.Do([this] { return log_text_.str(); });
    return std::count(text.begin(), text.end(), '\n');
  }

  std::vector<std::string> Addresses() {
    return loop_.Do([this] { return names_->Addresses(); });
  }

  std::ostringstream log_text_;
  Log log_{log_text_, [] { return std::chrono::system_clock::now(); }};
  kelsd::support::Latch changed_{1};
  HostLookups::Resolve resolve_ = HostLookups::AskSystem;
  Instant first_retry_ = DirectoryNames::kFirstRetry;
  LoopThread loop_;
  std::unique_ptr<DirectoryNames> names_;
};

TEST_F(DirectoryNamesTest, AreLookedUpAndToldOfWhenNotFound) {
  kelsd::support::Latch told(1);
  resolve_ = [&](const HostQuery& query) {
    if (query.name == "localhost") {
      told.Wait();  // so that the other one has gone to the log first
    }
    return HostLookups::AskSystem(query);
  };
  Apply({"no-such-host.invalid", "localhost"});
  EXPECT_TRUE(kelsd::support::WaitUntil(
      [this] { return !loop_.Do([this] { return log_text_.str(); }).empty(); }, std::chrono::seconds(30)));
  told.CountDown();
  changed_.Wait();
  EXPECT_THAT(Addresses(), ElementsAre("127.0.0.1"));
  EXPECT_THAT(loop_.Do([this] { return log_text_.str(); }),
              HasSubstr(" problem net.slp.DAAddresses names no-such-host.invalid, which is not found: "));
}

TEST_F(DirectoryNamesTest, WhatIsNoLongerNamedIsForgotten) {
  Apply({"localhost"});
  changed_.Wait();
  Apply({});
  EXPECT_THAT(Addresses(), IsEmpty());
}

TEST_F(DirectoryNamesTest, MayGoWhileTheyAreLookedUp) {
  loop_.Do([this] {
    DirectoryNames names(loop_.io(), log_, [this] { changed_.CountDown(); });
    names.Apply({"no-such-host.invalid", "localhost"}, false, kNever);
    names.Apply({"localhost"}, false, kNever);
  });
  // What was under way comes back to nobody; later names are served as ever.
  Apply({"localhost"});
  changed_.Wait();
  EXPECT_THAT(loop_.Do([this] { return log_text_.str(); }), IsEmpty());
}

TEST_F(DirectoryNamesTest, StandForAddressesOfBothVersionsWhereIpv6IsInUse) {
  resolve_ = [](const HostQuery& query) {
    HostAnswer answer{{}, {asio::ip::make_address("10.0.0.5")}};
    if (query.ipv6) {
      answer.addresses.push_back(asio::ip::make_address("2001:db8::5"));
    }
    return answer;
  };
  Apply({"agent.example"});
  changed_.Wait();
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.5"));
  Apply({"agent.example"}, true);
  EXPECT_TRUE(
      kelsd::support::WaitUntil([this] { return Addresses().size() == 2; }, std::chrono::seconds(30)));
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.5", "2001:db8::5"));
}

TEST_F(DirectoryNamesTest, NotFoundIsLookedUpAgainBehindWaitsThatDouble) {
  first_retry_ = Instant(20);
  const auto times = std::make_shared<std::vector<std::chrono::steady_clock::time_point>>();
  resolve_ = [times](const HostQuery&) {
    times->push_back(std::chrono::steady_clock::now());
    return times->size() < 4 ? HostAnswer{asio::error::host_not_found, {}}
                             : HostAnswer{{}, {asio::ip::make_address("10.0.0.5")}};
  };
  Apply({"agent.example"});
  changed_.Wait();
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.5"));
  ASSERT_THAT(*times, SizeIs(4));
  EXPECT_GE((*times)[1] - (*times)[0], Instant(20));
  EXPECT_GE((*times)[2] - (*times)[1], Instant(40));
  EXPECT_GE((*times)[3] - (*times)[2], Instant(80));
  EXPECT_EQ(Told(), 1);
}

TEST_F(DirectoryNamesTest, NotFoundWaitsNoLongerThanFound) {
  first_retry_ = kNever;
  const auto asked = std::make_shared<std::atomic<int>>(0);
  resolve_ = [asked](const HostQuery&) {
    ++*asked;
    return HostAnswer{asio::error::host_not_found, {}};
  };
  Apply({"agent.example"}, false, Seconds(1));
  EXPECT_TRUE(kelsd::support::WaitUntil([&] { return *asked >= 3; }, std::chrono::seconds(30)));
  EXPECT_EQ(Told(), 1);
}

TEST_F(DirectoryNamesTest, FoundAndLostAgainBeginsAnew) {
  first_retry_ = Instant(5);
  const auto asked = std::make_shared<std::atomic<int>>(0);
  resolve_ = [asked](const HostQuery&) {
    return ++*asked == 3 ? HostAnswer{{}, {asio::ip::make_address("10.0.0.5")}}
                         : HostAnswer{asio::error::host_not_found, {}};
  };
  Apply({"agent.example"}, false, Seconds(1));
  EXPECT_TRUE(kelsd::support::WaitUntil([this] { return Told() == 2; }, std::chrono::seconds(30)));
  EXPECT_GE(*asked, 4);
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.5"));
}

TEST_F(DirectoryNamesTest, NoneWaitsForAnother) {
  const auto release = std::make_shared<kelsd::support::Latch>(1);
  resolve_ = [release](const HostQuery& query) {
    if (query.name == "slow.example") {
      release->Wait();
    }
    return HostAnswer{{}, {asio::ip::make_address("10.0.0.5")}};
  };
  Apply({"slow.example", "agent.example"});
  changed_.Wait();
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.5"));
  loop_.Do([this] { names_.reset(); });  // ends without an answer
  release->CountDown();
}

}  // namespace
}  // namespace slp
