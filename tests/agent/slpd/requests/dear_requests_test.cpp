// Requests that ask for more comparisons than one may: the answer is the error alone, and it is told.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

using ::testing::Contains;
using ::testing::Not;
using ::testing::StartsWith;

constexpr std::size_t kEffort = std::size_t{1024} * 1024;
constexpr std::size_t kTags = 250;

/// As many terms as there may be, each of which a service without "zzz" satisfies after a look at all of `a`.
std::string DearPredicate() {
  std::string predicate = "(&";
  for (int i = 0; i < Predicate::kMaximumComparisons; ++i) {
    predicate += "(!(a=*zzz" + std::to_string(i) + "*))";
  }
  return predicate + ')';
}

class DearRequestsTest : public ::testing::Test {
 protected:
  DearRequestsTest() { Limit(kEffort); }

  void Limit(std::size_t effort) {
    AgentSettings settings = TestSettings();
    settings.request_effort = effort;
    daemon_.handler.SetSettings(settings);
  }

  /// The first one costs nearly nothing, so that it is found before the search has to end.
  void FillWithLongValues() {
    daemon_.Register(MakeSrvReg("service:x://first", "service:x", "(a=1)"));
    for (int i = 0; i < 3; ++i) {
      daemon_.Register(
          MakeSrvReg("service:x://h/" + std::to_string(i), "service:x", "(a=" + std::string(900, 'y') + ")"));
    }
    daemon_.events.Take();
  }

  DaemonLogic daemon_;
};

TEST_F(DearRequestsTest, ASearchIsAnsweredWithTheErrorAndNothingElse) {
  FillWithLongValues();
  for (const RequestOrigin& origin : {kNeighbour, kStreamPeer}) {
    EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:x", DearPredicate()), origin),
              ReplyOf(SrvRply{Error::kInternalError, {}}));
    EXPECT_THAT(daemon_.events.Take(), Contains("too much to compare " + origin.address + " 3"));
  }
}

TEST_F(DearRequestsTest, AMulticastOneIsNotAnswered) {
  FillWithLongValues();
  EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:x", DearPredicate()), kGroupMember), std::nullopt);
  const std::vector<std::string> events = daemon_.events.Take();
  EXPECT_THAT(events, Contains("too much to compare " + kGroupMember.address + " 3"));
  EXPECT_THAT(events, Contains("dropped multicast: nothing to say"));
}

TEST_F(DearRequestsTest, SoAreRequestsForAttributesAndDeregistrationsOfThem) {
  std::string attributes;
  for (int i = 0; i < 150; ++i) {
    attributes += (attributes.empty() ? "k" : ",k") + std::to_string(i);
  }
  // One list of attributes is never too much by itself, two are.
  daemon_.Register(MakeSrvReg("service:x://h", "service:x", attributes));
  daemon_.Register(MakeSrvReg("service:x://h", "service:x", attributes), true, "de");
  daemon_.Register(MakeSrvReg("service:x://i", "service:x", attributes));
  std::string tags;
  for (std::size_t i = 0; i < kTags; ++i) {
    tags += (tags.empty() ? "*z" : ",*z") + std::to_string(i);
  }
  const AttrRply refused{Error::kInternalError, {}, {}};
  daemon_.events.Take();
  EXPECT_EQ(daemon_.Ask(MakeAttrRqst("service:x", tags + ",k1")), ReplyOf(refused));
  EXPECT_THAT(daemon_.events.Take(), Contains("too much to compare 10.0.0.7 2"));
  EXPECT_EQ(daemon_.Ask(MakeAttrRqst("service:x", tags), kGroupMember), std::nullopt);
  EXPECT_EQ(daemon_.Ask(SrvDereg{"DEFAULT", {0, "service:x://h", {}}, tags}, kOwnHost),
            ReplyOf(SrvAck{Error::kInternalError}));
  EXPECT_THAT(daemon_.events.Take(), Contains("too much to compare 127.0.0.1 0"));
  EXPECT_EQ(daemon_.Ask(MakeAttrRqst("service:x://h", "k1,k99*")),
            ReplyOf(AttrRply{Error::kOk, "k1,k99", {}}));
}

TEST_F(DearRequestsTest, SoAreSearchesForTheAgentsThemselves) {
  std::string attributes = "(a=y";
  for (int i = 0; i < 80; ++i) {
    attributes += ",y";
  }
  attributes += ')';
  AgentSettings settings = daemon_.handler.settings();
  settings.service_agent_attributes = attributes;
  settings.directory_agent_attributes = attributes;
  settings.directory_agent = true;
  daemon_.handler.SetSettings(settings);

  // A negation asks for one value that is another one, so it is the comparison itself that looks at each.
  std::string predicate = "(|";
  for (int i = 0; i < Predicate::kMaximumComparisons; ++i) {
    predicate += "(a=*z*)";
  }
  predicate += ')';
  EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:service-agent", predicate)),
            ReplyOf(SrvRply{Error::kInternalError, {}}));
  EXPECT_THAT(daemon_.events.Take(), Contains("too much to compare 10.0.0.7 0"));
  const std::optional<Message> advert =
      daemon_.Ask(MakeSrvRqst("service:directory-agent", predicate), kStreamPeer);
  ASSERT_TRUE(advert && std::holds_alternative<DaAdvert>(advert->body));
  EXPECT_EQ(std::get<DaAdvert>(advert->body).error, Error::kInternalError);
  EXPECT_THAT(daemon_.events.Take(), Contains("too much to compare 192.0.2.9 0"));
  EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:directory-agent", predicate), kGroupMember), std::nullopt);
}

// For a hundred thousand services, here one in a hundred, and ten terms that no index helps with.
TEST_F(DearRequestsTest, WhatSearchesUsuallyAskForIsFarFromIt) {
  Limit(TestSettings().request_effort / 100);
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(daemon_.registry.Register(
                  MakeRegistration("service:x://h/" + number, "service:x",
                                   "(location=room " + number + "),(color=red),(pages-per-minute=30)"),
                  daemon_.now),
              Error::kOk);
  }
  daemon_.events.Take();
  std::string predicate = "(&";
  for (int i = 0; i < 9; ++i) {
    predicate += "(!(location=hall " + std::to_string(i) + "*))";
  }
  predicate += "(!(color=red)))";
  const std::uint64_t before = daemon_.registry.touched();
  EXPECT_EQ(daemon_.Ask(MakeSrvRqst("service:x", predicate)), ReplyOf(SrvRply{Error::kOk, {}}));
  EXPECT_EQ(daemon_.registry.touched() - before, 1000U);
  EXPECT_THAT(daemon_.events.Take(), Not(Contains(StartsWith("too much"))));
}

}  // namespace
}  // namespace slp
