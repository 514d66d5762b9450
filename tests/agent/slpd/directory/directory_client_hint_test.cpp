// Advertisements that nobody has asked for: what comes of them, and what those get whose names they are sent
// in.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/directory/directory_client_fixture.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kFarAgent = "198.51.100.5";
constexpr const char* kToFarAgent = "to 198.51.100.5: ask service:directory-agent";
constexpr const char* kIsThere = "told directory agent 198.51.100.5 is there, scopes DEFAULT";

class DirectoryClientHintTest : public DirectoryClientTest {
 protected:
  // A known agent beyond the own networks, and one service that it knows.
  void KnowStranger() {
    ApplyPassive();
    Register("service:x://1");
    HearUnasked(FromBeyond(kFarAgent));
    AnswerFrom(kFarAgent);
    Acknowledge(kFarAgent);
    Advance(Seconds(2));
    wire_.Take();
  }

  void ForgetStranger() {
    HearUnasked(From(kFarAgent), 0);
    static_cast<void>(registry_.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited()));
    wire_.Take();
  }

  // The agent's own answer to the latest question.
  void AnswerFrom(const std::string& address, std::uint32_t boot = kBootTime) {
    Message message;
    message.header.xid = wire_.xid;
    message.body = DaAdvert{Error::kOk, boot, "service:directory-agent://" + address, "DEFAULT", "", "", {}};
    Take(message, FromBeyond(address));
  }
};

TEST_F(DirectoryClientHintTest, AnAgentIsKnownWhenItAnswersAndNotBefore) {
  for (const bool beyond : {true, false}) {
    ApplyPassive();
    const std::string address = beyond ? kFarAgent : "10.0.0.5";
    HearUnasked(beyond ? FromBeyond(address) : From(address));
    EXPECT_THAT(wire_.Take(), ElementsAre("to " + address + ": ask service:directory-agent"));
    EXPECT_THAT(client_.Serving({}), IsEmpty());
    Message guessed;
    guessed.header.xid = static_cast<std::uint16_t>(wire_.xid + 1);
    guessed.body =
        DaAdvert{Error::kOk, kBootTime, "service:directory-agent://" + address, "DEFAULT", "", "", {}};
    Take(guessed, From(address));
    EXPECT_THAT(client_.Serving({}), IsEmpty());
    guessed.header.xid = wire_.xid;
    Take(guessed, From(address));
    EXPECT_THAT(client_.Serving({}), ElementsAre("service:directory-agent://" + address));
    Hear(address, 0);
    wire_.Take();
  }
}

TEST_F(DirectoryClientHintTest, OneOfTheOwnNetworksIsAskedAsOftenAsAnybody) {
  ApplyPassive();
  HearUnasked(From("10.0.0.5"));
  const std::string ask = "to 10.0.0.5: ask service:directory-agent";
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), ElementsAre(ask, ask));
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

TEST_F(DirectoryClientHintTest, TrustedNetworksAndStreamsAreAskedAsOwnOnes) {
  RequestOrigin trusted = FromBeyond(kFarAgent);
  trusted.trusted_network = true;
  RequestOrigin stream = FromBeyond(kFarAgent);
  stream.transport = Transport::kTcp;
  for (const RequestOrigin& origin : {trusted, stream}) {
    ApplyPassive();
    HearUnasked(origin);
    Advance(Seconds(60));
    EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent, kToFarAgent));
  }
}

TEST_F(DirectoryClientHintTest, AStrangerIsAskedOnceAndForgotten) {
  ApplyPassive();
  Register("service:x://1");
  HearUnasked(FromBeyond(kFarAgent));
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

TEST_F(DirectoryClientHintTest, WhoeverSendsInAStrangersNameHasItGetLessThanWasSent) {
  ApplyPassive();
  for (int i = 0; i < 100; ++i) {
    Register("service:x://" + std::to_string(i), {"DEFAULT"}, "(a=" + std::string(1000, 'b') + ")");
  }
  std::size_t sent = 0;
  for (std::uint32_t boot = 1; boot <= 600; ++boot) {
    sent += HearUnasked(FromBeyond(kFarAgent), boot);
    Advance(Instant(100));
  }
  EXPECT_GT(wire_.bytes, 0U);
  EXPECT_LE(wire_.bytes, sent);
  EXPECT_LE(wire_.Take().size(), 31U) << "one question in two seconds";
}

TEST_F(DirectoryClientHintTest, AKnownStrangerGetsNoMoreEither) {
  for (const std::uint32_t step : {0U, 1U}) {
    KnowStranger();
    wire_.bytes = 0;
    std::size_t sent = 0;
    int questions = 0;
    for (std::uint32_t i = 0; i < 600; ++i) {
      sent += HearUnasked(FromBeyond(kFarAgent), step * (kBootTime + 1 + i));
      Advance(Instant(100));
      if (wire_.TakeQuestion(kFarAgent)) {
        ++questions;
        AnswerFrom(kFarAgent);
      }
    }
    EXPECT_GT(wire_.bytes, 0U);
    EXPECT_LE(wire_.bytes, sent);
    EXPECT_LE(questions, 31) << "one in two seconds";
    EXPECT_THAT(wire_.Take(), IsEmpty()) << "it has never changed, and never ended";
    EXPECT_EQ(client_.Serving({}).size(), 1U);
    ForgetStranger();
  }
}

TEST_F(DirectoryClientHintTest, AQuestionThatWouldBeLongerIsNotAsked) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.language = "en-" + std::string(50, 'x');
  client_.Apply(settings, now_);
  HearUnasked(FromBeyond(kFarAgent));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  HearUnasked(From("10.0.0.5"));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: ask service:directory-agent"));
}

TEST_F(DirectoryClientHintTest, InventedStrangersTakeNoPlaceFromOthersAndNoneForLong) {
  ApplyPassive();
  std::size_t sent = 0;
  for (int i = 0; i < 1000; ++i) {
    sent += HearUnasked(FromBeyond("198.51." + std::to_string(i / 250) + "." + std::to_string(1 + i % 250)));
  }
  EXPECT_EQ(wire_.Take().size(), DirectoryClient::kMostStrangers);
  EXPECT_LE(wire_.bytes, sent);
  Hear("10.0.0.5");
  EXPECT_EQ(client_.Serving({}).size(), 1U);
  Advance(Seconds(3));
  wire_.Take();
  HearUnasked(FromBeyond(kFarAgent));
  AnswerFrom(kFarAgent);
  EXPECT_EQ(client_.Serving({}).size(), 2U);
}

TEST_F(DirectoryClientHintTest, AKnownStrangerThatHasRestartedIsToldEverythingAnew) {
  KnowStranger();
  HearUnasked(FromBeyond(kFarAgent), kBootTime + 1);
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  AnswerFrom(kFarAgent, kBootTime + 1);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 198.51.100.5 has changed, scopes DEFAULT",
                                        "to 198.51.100.5: register service:x://1 en 3598 DEFAULT "));
}

TEST_F(DirectoryClientHintTest, TheSilenceOfAKnownStrangerThatWasAskedOnceSaysNothing) {
  KnowStranger();
  HearUnasked(FromBeyond(kFarAgent), kBootTime + 1);
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientHintTest, AStrangersFarewellIsItsOwnWhenItIsSilent) {
  KnowStranger();
  HearUnasked(FromBeyond(kFarAgent), 0);
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  AnswerFrom(kFarAgent);
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  EXPECT_EQ(client_.Serving({}).size(), 1U);
  HearUnasked(FromBeyond(kFarAgent), 0);
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent, "told directory agent 198.51.100.5 is going down"));
  EXPECT_THAT(client_.Serving({}), IsEmpty());
}

TEST_F(DirectoryClientHintTest, OnlyTheAddressItselfSaysItsFarewell) {
  ApplyPassive();
  Hear("10.0.0.5");
  wire_.Take();
  HearAs("10.0.0.6", "10.0.0.5", 0, "DEFAULT", 0);
  EXPECT_THAT(wire_.Take(), IsEmpty());
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientHintTest, OneThatIsBackWhenItIsGivenUpIsAskedNonetheless) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  Advance(Instant(1000));
  wire_.Take();
  HearUnasked(From("10.0.0.5"), kBootTime + 1);
  Advance(Instant(250));
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 does not answer",
                                        "to 10.0.0.5: ask service:directory-agent"));
  Hear("10.0.0.5", kBootTime + 1, "DEFAULT", wire_.xid);
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientHintTest, AHeartBeatThatSaysNothingNewIsNotAskedFor) {
  KnowStranger();
  HearUnasked(FromBeyond(kFarAgent));
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientHintTest, OneThatWasCutIsAskedForByUdpFirst) {
  ApplyPassive();
  Message cut;
  cut.header.overflow = true;
  cut.body = DaAdvert{Error::kOk, kBootTime, std::string(60, 'u'), "", "", "", {}};
  Take(cut, FromBeyond(kFarAgent));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  cut.header.xid = wire_.xid;
  Take(cut, FromBeyond(kFarAgent));
  EXPECT_THAT(wire_.Take(), ElementsAre("tcp 198.51.100.5: ask service:directory-agent"));
  AnswerFrom(kFarAgent);
  EXPECT_THAT(wire_.Take(), ElementsAre(kIsThere));
}

TEST_F(DirectoryClientHintTest, AConfiguredAgentIsAskedWhenItIsHeardAndKeepsItsTurn) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.configured = {kFarAgent};
  client_.Apply(settings, now_);
  Advance(Seconds(2));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent, kToFarAgent));
  HearUnasked(FromBeyond(kFarAgent));
  Advance(Seconds(5));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent));
  Advance(Seconds(10));
  EXPECT_THAT(wire_.Take(), ElementsAre(kToFarAgent, kToFarAgent)) << "fifteen seconds after it was given up";
  AnswerFrom(kFarAgent);
  EXPECT_THAT(wire_.Take(), ElementsAre(kIsThere));
}

}  // namespace
}  // namespace slp
