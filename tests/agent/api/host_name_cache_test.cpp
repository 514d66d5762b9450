#include "api/host_name_cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/latch.h"
#include "support/wait_until.h"

namespace slp::client {
namespace {

using kelsd::support::Latch;
using kelsd::support::WaitUntil;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr seconds kLongEnough{60};

const HostQuery kOne{"one.example", false};
const HostQuery kTwo{"two.example", false};
const asio::ip::address kFirst = asio::ip::make_address("10.0.0.1");
const asio::ip::address kSecond = asio::ip::make_address("10.0.0.2");

// The name server of a test, which a lookup may outlive, and the test's clock.
struct NameServer {
  std::atomic<int> asked = 0;
  std::atomic<bool> knows = true;
  std::atomic<bool> other_address = false;
  std::atomic<bool> silent = false;
  Latch answer{1};
  std::atomic<seconds::rep> now = 1000;
};

class HostNameCacheTest : public testing::Test {
 protected:
  static HostAnswer Answer(NameServer& server, const HostQuery& query) {
    ++server.asked;
    if (query == kTwo && server.silent) {
      server.answer.Wait();
    }
    if (!server.knows) {
      return {asio::error::host_not_found, {}};
    }
    return {{}, {query == kTwo || server.other_address ? kSecond : kFirst}};
  }

  const std::shared_ptr<NameServer> server_ = std::make_shared<NameServer>();
  HostNameCache cache_{
      [server = server_](const HostQuery& query) { return Answer(*server, query); },
      [server = server_] { return std::chrono::steady_clock::time_point(seconds(server->now.load())); }};
};

TEST_F(HostNameCacheTest, AnAnswerIsKeptAndThenLookedForAnewWithoutWaiting) {
  EXPECT_THAT(cache_.Addresses({kOne, kTwo, kOne}, kLongEnough), ElementsAre(kFirst, kSecond));
  EXPECT_THAT(cache_.Addresses({kTwo}, kLongEnough), ElementsAre(kSecond));
  server_->now += 899;
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), ElementsAre(kFirst));
  EXPECT_EQ(server_->asked, 2);
  server_->other_address = true;
  server_->now += 1;
  // Whether the earlier address is still told depends on who is faster.
  EXPECT_TRUE(WaitUntil(
      [&] { return cache_.Addresses({kOne}, milliseconds(0)) == std::vector<asio::ip::address>{kSecond}; },
      kLongEnough));
  EXPECT_EQ(server_->asked, 3);
}

TEST_F(HostNameCacheTest, WhatIsNotFoundIsKeptForAMinute) {
  server_->knows = false;
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), IsEmpty());
  server_->knows = true;
  server_->now += 59;
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), IsEmpty());
  EXPECT_EQ(server_->asked, 1);
  server_->now += 1;
  EXPECT_TRUE(WaitUntil([&] { return !cache_.Addresses({kOne}, milliseconds(0)).empty(); }, kLongEnough));
  EXPECT_EQ(server_->asked, 2);
}

TEST_F(HostNameCacheTest, ANameThatIsNoLongerFoundKeepsItsAddresses) {
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), ElementsAre(kFirst));
  server_->knows = false;
  server_->now += 900;
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), ElementsAre(kFirst));
  EXPECT_TRUE(WaitUntil([&] { return server_->asked == 2; }, kLongEnough));
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), ElementsAre(kFirst));
}

// The second name has no answer before its server gives one.
class SilentNameServer : public HostNameCacheTest {
 protected:
  SilentNameServer() { server_->silent = true; }
  ~SilentNameServer() override { server_->answer.CountDown(); }
};

TEST_F(SilentNameServer, IsWaitedForOnce) {
  EXPECT_THAT(cache_.Addresses({kOne}, kLongEnough), ElementsAre(kFirst));
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(cache_.Addresses({kOne, kTwo}, milliseconds(100)), ElementsAre(kFirst));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(100));
  EXPECT_THAT(cache_.Addresses({kTwo}, seconds(600)), IsEmpty()) << "the time limit of the test is shorter";
  EXPECT_TRUE(WaitUntil([&] { return server_->asked == 2; }, kLongEnough));
  EXPECT_FALSE(WaitUntil([&] { return server_->asked != 2; }, milliseconds(50))) << "it is under way once";
}

TEST_F(SilentNameServer, AnswersLateButNotInVain) {
  EXPECT_THAT(cache_.Addresses({kTwo}, milliseconds(1)), IsEmpty());
  server_->answer.CountDown();
  EXPECT_TRUE(WaitUntil([&] { return !cache_.Addresses({kTwo}, milliseconds(0)).empty(); }, kLongEnough));
}

TEST_F(HostNameCacheTest, ManyThreadsAskOnce) {
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&] {
      right += cache_.Addresses({kOne, kTwo}, kLongEnough) == std::vector{kFirst, kSecond} ? 1 : 0;
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(right, 8);
  EXPECT_EQ(server_->asked, 2);
}

}  // namespace
}  // namespace slp::client
