// Directory agents whose answers make no directory agent known.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "agent/slpd/directory/directory_client_fixture.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kAgent = "10.0.0.5";
const std::string kAsk = "to 10.0.0.5: ask service:directory-agent";
const std::string kAskByTcp = "tcp 10.0.0.5: ask service:directory-agent";
const std::string kTold = "problem directory agent 10.0.0.5 of net.slp.DAAddresses ";
const std::string kAgainIn15 =
    "; nothing is registered there; asked again in 15 seconds, then after longer and longer waits";
const std::string kThere = "told directory agent 10.0.0.5 is there, scopes DEFAULT";

DaAdvert Useful() {
  return {Error::kOk, kBootTime, "service:directory-agent://10.0.0.5", "DEFAULT", "", "", {}};
}

struct Useless {
  std::string name;
  DaAdvert answer;
  std::string fault;
};

std::vector<Useless> UselessAnswers() {
  DaAdvert busy = Useful();
  busy.error = Error::kDaBusyNow;
  DaAdvert leaving = Useful();
  leaving.boot_timestamp = 0;
  DaAdvert without_scopes = Useful();
  without_scopes.scopes = "";
  DaAdvert of_another = Useful();
  of_another.url = "service:directory-agent://10.0.0.6";
  return {{"Error", busy, "answers with error 11"},
          {"BootTimestamp0", leaving, "is going down"},
          {"NoScopes", without_scopes, "serves no scopes"},
          {"AnotherAddress", of_another,
           "names another address in its answer, service:directory-agent://10.0.0.6"}};
}

class DirectoryClientUselessTest : public DirectoryClientTest {
 protected:
  // Only the one configured agent, and no searches.
  void ApplyConfigured() {
    DirectoryClientSettings settings = ClientSettings();
    settings.active = false;
    settings.passive = false;
    settings.configured = {kAgent};
    client_.Apply(settings, now_);
    client_.Tick(now_);
  }

  // What it was asked last.
  void Answer(const DaAdvert& answer, Transport transport = Transport::kUdpUnicast, bool cut = false) {
    Message message;
    message.header.xid = wire_.xid;
    message.header.overflow = cut;
    message.body = answer;
    RequestOrigin origin = From(kAgent);
    origin.transport = transport;
    Take(message, origin);
  }
};

class DirectoryClientUselessAnswerTest : public DirectoryClientUselessTest,
                                         public testing::WithParamInterface<Useless> {};

TEST_P(DirectoryClientUselessAnswerTest, AConfiguredAgentIsAskedAgainAndItsFaultToldOnce) {
  ApplyConfigured();
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Answer(GetParam().answer);
  EXPECT_THAT(wire_.Take(), ElementsAre(kTold + GetParam().fault + kAgainIn15));
  Advance(Instant(14'999));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Answer(GetParam().answer);
  Advance(Instant(29'999));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Answer(Useful());
  EXPECT_THAT(wire_.Take(), ElementsAre(kThere));
  EXPECT_THAT(client_.Serving({}), ElementsAre("service:directory-agent://10.0.0.5"));
}

INSTANTIATE_TEST_SUITE_P(Answers, DirectoryClientUselessAnswerTest, testing::ValuesIn(UselessAnswers()),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(DirectoryClientUselessTest, AnotherFaultIsToldAndOneThatComesBack) {
  const std::vector<Useless> answers = UselessAnswers();
  ApplyConfigured();
  Answer(answers[0].answer);
  wire_.Take();
  Advance(Seconds(15));
  Answer(answers[2].answer);
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk, kTold + "serves no scopes" +
                                                  "; nothing is registered there; asked again in 30 seconds, "
                                                  "then after longer and longer waits"));
  Advance(Seconds(30));
  Answer(Useful());
  Hear(kAgent, 0);
  wire_.Take();
  Advance(Seconds(15));
  Answer(answers[2].answer);
  EXPECT_THAT(wire_.Take(), testing::Contains(testing::HasSubstr("serves no scopes")));
}

TEST_F(DirectoryClientUselessTest, AKnownAgentStaysAndIsAskedAgainAfterThePeriod) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.configured = {kAgent};
  settings.check_period = Seconds(60);
  client_.Apply(settings, now_);
  client_.Tick(now_);
  Answer(Useful());
  wire_.Take();
  for (int i = 0; i < 2; ++i) {
    Advance(Seconds(60));
    EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
    Answer(UselessAnswers()[0].answer);
    EXPECT_THAT(wire_.Take(), IsEmpty());
  }
  EXPECT_THAT(client_.Serving({}), ElementsAre("service:directory-agent://10.0.0.5"));
}

TEST_F(DirectoryClientUselessTest, AnotherAgentIsForgotten) {
  ApplyPassive();
  HearUnasked(From(kAgent));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Answer(UselessAnswers()[0].answer);
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
  Advance(Seconds(1000));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

// Wherever the second cut answer comes by, for the question went by TCP.
class DirectoryClientCutAnswerTest : public DirectoryClientUselessTest,
                                     public testing::WithParamInterface<Transport> {};

TEST_P(DirectoryClientCutAnswerTest, AConfiguredAgentThatCutsByTcpTooIsAskedAgainAfterTheWait) {
  ApplyConfigured();
  Answer(Useful(), Transport::kUdpUnicast, true);
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk, kAskByTcp));
  Answer(Useful(), GetParam(), true);
  EXPECT_THAT(wire_.Take(), ElementsAre(kTold + "cuts its answer by TCP, too" + kAgainIn15));
  Advance(Seconds(15));
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk));
  Answer(Useful());
  EXPECT_THAT(wire_.Take(), ElementsAre(kThere));
}

TEST_P(DirectoryClientCutAnswerTest, AnotherAgentThatCutsByTcpTooIsForgotten) {
  ApplyPassive();
  HearUnasked(From(kAgent));
  Answer(Useful(), Transport::kUdpUnicast, true);
  EXPECT_THAT(wire_.Take(), ElementsAre(kAsk, kAskByTcp));
  Answer(Useful(), GetParam(), true);
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Transports, DirectoryClientCutAnswerTest,
                         testing::Values(Transport::kTcp, Transport::kUdpUnicast));

}  // namespace
}  // namespace slp
