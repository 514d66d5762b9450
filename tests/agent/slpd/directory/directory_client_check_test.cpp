// Which known agents are asked whether they are still there, and when.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/directory/directory_client_fixture.h"

namespace slp {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kAsk = "to 10.0.0.5: ask service:directory-agent";
constexpr const char* kGone = "told directory agent 10.0.0.5 does not answer";

class DirectoryClientCheckTest : public DirectoryClientTest {
 protected:
  // A known agent, and no service that it might be told of.
  void KnowAgent() {
    ApplyPassive();
    Hear("10.0.0.5");
    wire_.Take();
  }

  void ApplyCheckPeriod(Seconds period) {
    DirectoryClientSettings settings = ClientSettings();
    settings.active = false;
    settings.check_period = period;
    client_.Apply(settings, now_);
  }
};

TEST_F(DirectoryClientCheckTest, NobodyIsAskedWhileNobodySearches) {
  KnowAgent();
  EXPECT_EQ(client_.Serving({}).size(), 1U);
  const auto next = client_.NextDue(now_);
  EXPECT_TRUE(!next || *next >= now_ + kRenewalRound) << "nothing but the next round of renewals";
}

TEST_F(DirectoryClientCheckTest, OneThatIsDeadWhenItIsReliedOnIsForgotten) {
  KnowAgent();
  Advance(Seconds(100));
  client_.CheckSoon(now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  for (int searches = 0; searches < 12; ++searches) {
    client_.CheckSoon(now_);
    Advance(Instant(100));
  }
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  EXPECT_EQ(client_.Serving({}).size(), 1U);
  Advance(Instant(50));
  EXPECT_THAT(wire_.Take(), ElementsAre(kGone));
  EXPECT_THAT(client_.Serving({}), IsEmpty());
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
  Hear("10.0.0.5");
  EXPECT_EQ(client_.Serving({}).size(), 1U) << "its next heart beat";
}

TEST_F(DirectoryClientCheckTest, OneThatAnswersIsAskedOnceInFiveSecondsHoweverManyRelyOnIt) {
  KnowAgent();
  std::vector<Instant> asked;
  const Instant begin = now_;
  for (int searches = 0; searches < 300; ++searches) {
    client_.CheckSoon(now_);
    Advance(Instant(100));
    if (wire_.TakeQuestion("10.0.0.5")) {
      asked.push_back(now_ - begin);
      Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
    }
  }
  EXPECT_THAT(asked,
              ElementsAre(Seconds(5), Seconds(10), Seconds(15), Seconds(20), Seconds(25), Seconds(30)));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientCheckTest, OneSearchHasItAskedWhenItsAnswerIsOldEnough) {
  KnowAgent();
  Advance(Seconds(2));
  client_.CheckSoon(now_);
  Advance(Seconds(3) - Instant(1));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  Advance(Seconds(100));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientCheckTest, AnAcknowledgmentIsAnAnswer) {
  KnowAgent();
  Advance(Seconds(100));
  Register("service:x://1");
  client_.Tick(now_);
  Acknowledge("10.0.0.5");
  wire_.Take();
  client_.CheckSoon(now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientCheckTest, WhatIsOnlySentInItsNameIsNone) {
  KnowAgent();
  client_.CheckSoon(now_);
  for (int beats = 0; beats < 49; ++beats) {
    Advance(Instant(100));
    HearUnasked(From("10.0.0.5"));
  }
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(100));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
}

TEST_F(DirectoryClientCheckTest, WhoDoesNotAnswerASearchOfTheDaemonIsAskedItself) {
  client_.Apply(ClientSettings(), now_);
  Advance(Instant(10));
  for (const char* const address : {"10.0.0.5", "10.0.0.6"}) {
    Hear(address, kBootTime, "DEFAULT", wire_.xid);
  }
  // Three rounds: the second one brings nobody new, nor does the third.
  Advance(Instant(2240) + Seconds(900));
  EXPECT_THAT(wire_.Take(), Not(Contains(kAsk)));
  Advance(Instant(10));
  Hear("10.0.0.6", kBootTime, "DEFAULT", wire_.xid);
  Advance(Instant(2240));
  EXPECT_EQ(wire_.Take().back(), kAsk);
  Advance(Instant(1250));
  EXPECT_THAT(wire_.Take(), Contains(kGone));
  EXPECT_THAT(client_.Serving({}), ElementsAre("service:directory-agent://10.0.0.6"));
}

TEST_F(DirectoryClientCheckTest, AReloadedPeriodCountsForThoseThatAreKnown) {
  KnowAgent();
  ApplyCheckPeriod(Seconds(60));
  Advance(Seconds(60) - Instant(1));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  ApplyCheckPeriod(Seconds(0));
  Advance(Seconds(600));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

}  // namespace
}  // namespace slp
