#include "slpd/directory/directory_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/directory/directory_client_fixture.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(DirectoryClientTest, SearchesAfterARandomWaitUntilTwoQuietRoundsAndAgainAfterTheInterval) {
  random_ = 700;
  client_.Apply(ClientSettings(), now_);
  Advance(Instant(699));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("all, but "));
  EXPECT_EQ(wire_.xid, 701);
  Advance(Instant(500));
  EXPECT_THAT(wire_.Take(), ElementsAre("all, but "));
  Advance(Instant(750));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(899));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("all, but "));
}

TEST_F(DirectoryClientTest, ASearchWithMoreRoundsThanItsReloadedTimeoutsEnds) {
  client_.Apply(ClientSettings(), now_);
  Advance(Instant(0));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  Advance(Instant(500));
  wire_.Take();
  DirectoryClientSettings settings = ClientSettings();
  settings.discovery_waits = {Instant(500)};
  client_.Apply(settings, now_);
  Advance(Instant(750));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(900));
  EXPECT_THAT(wire_.Take(), ElementsAre("all, but "));
}

TEST_F(DirectoryClientTest, NamesWhoHasAnsweredAndLoopbackOnlyToLoopback) {
  client_.Apply(ClientSettings(), now_);
  Advance(Instant(0));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  Hear("127.0.0.7", kBootTime, "DEFAULT", wire_.xid);
  Advance(Instant(500));
  EXPECT_THAT(wire_.Take(), ElementsAre("all, but ", "told directory agent 10.0.0.5 is there, scopes DEFAULT",
                                        "told directory agent 127.0.0.7 is there, scopes DEFAULT",
                                        "all, but 10.0.0.5,127.0.0.7"));
  EXPECT_EQ(wire_.beyond_host, "10.0.0.5");
  EXPECT_THAT(client_.Serving({"default"}),
              ElementsAre("service:directory-agent://10.0.0.5", "service:directory-agent://127.0.0.7"));
  EXPECT_THAT(client_.Serving({"TAMRO"}), IsEmpty());
}

TEST_F(DirectoryClientTest, NoActiveSearchWithoutItsPropertyOrInterval) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  client_.Apply(settings, now_);
  Advance(Seconds(2000));
  settings = ClientSettings();
  settings.interval = Seconds(0);
  client_.Apply(settings, now_);
  Advance(Seconds(2000));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

TEST_F(DirectoryClientTest, RegistersEverythingWithAnAgentThatIsHeardAfterARandomWait) {
  ApplyPassive();
  Register("service:x://1", {"DEFAULT", "TAMRO"}, "(a=1)");
  Register("service:x://2", {"TAMRO"});
  Register("service:x://3", {"DEFAULT"}, "", RegistrationSource::kAgent);
  now_ += Seconds(600);
  random_ = 300;
  Hear("10.0.0.5");
  EXPECT_THAT(wire_.Take(), IsEmpty()) << "many hosts hear it at once";
  Advance(Instant(300));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: ask service:directory-agent"));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  Advance(Instant(299));
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is there, scopes DEFAULT"));
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3000 DEFAULT (a=1)"));
  Acknowledge("10.0.0.5");
  Advance(Seconds(3));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientTest, OneAfterTheOther_RepeatedUntilAcknowledged) {
  ApplyPassive();
  Register("service:x://1");
  Register("service:x://2");
  Hear("10.0.0.5");
  wire_.Take();
  const std::uint16_t xid = wire_.xid;
  Advance(Instant(500));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT "));
  EXPECT_EQ(wire_.xid, xid);
  Acknowledge("10.0.0.9");
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://2 en 3600 DEFAULT "));
}

TEST_F(DirectoryClientTest, TellsEveryAgentOfEveryChange) {
  ApplyPassive();
  Hear("10.0.0.5");
  Hear("10.0.0.6", kBootTime, "tamro");
  wire_.Take();
  Register("service:x://1", {"DEFAULT", "TAMRO"});
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT ",
                                        "to 10.0.0.6: register service:x://1 en 3600 TAMRO "));
  random_ = 0;
  Acknowledge("10.0.0.5");
  Acknowledge("10.0.0.6");
  Register("service:x://1", {"DEFAULT", "TAMRO"}, "(a=2)");
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT (a=2)",
                                        "to 10.0.0.6: register service:x://1 en 3600 TAMRO (a=2)"));
  Acknowledge("10.0.0.5");
  Acknowledge("10.0.0.6");
  ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT", "TAMRO"}, {}, Unlimited()), Error::kOk);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT",
                                        "to 10.0.0.6: deregister service:x://1 TAMRO"));
}

TEST_F(DirectoryClientTest, WhatExpiresExpiresThereToo) {
  ApplyPassive();
  Hear("10.0.0.5");
  Register("service:x://1");
  client_.Tick(now_);
  Acknowledge("10.0.0.5");
  wire_.Take();
  registry_.Expire(now_ + Seconds(3601));
  Advance(Seconds(3601));
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientTest, WhatComesAndGoesMeanwhileIsToldOnce) {
  ApplyPassive();
  Hear("10.0.0.5");
  wire_.Take();
  Register("service:x://1");
  ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  Register("service:x://1", {"DEFAULT"}, "(a=3)");
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT (a=3)"));
}

// It is in one scope of two that are served here; the agent serves the first.
TEST_F(DirectoryClientTest, WhatMovesToScopesThatTheAgentDoesNotServeIsDeregistered) {
  ApplyPassive();
  Hear("10.0.0.5");
  for (const RegistrationSource source : {RegistrationSource::kMessage, RegistrationSource::kFile}) {
    Register("service:x://1", {"DEFAULT"}, "", source);
    client_.Tick(now_);
    Acknowledge("10.0.0.5");
    wire_.Take();
    registry_.DropFileRegistrations();
    Register("service:x://1", {"TAMRO"}, "", source);
    client_.Tick(now_);
    EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
    Acknowledge("10.0.0.5");
    ASSERT_EQ(registry_.Deregister("service:x://1", {"TAMRO"}, {}, Unlimited()), Error::kOk);
    client_.Tick(now_);
    EXPECT_THAT(wire_.Take(), IsEmpty());
  }
}

TEST_F(DirectoryClientTest, WhatMovesAndEndsBeforeItIsToldIsDeregistered) {
  ApplyPassive();
  Hear("10.0.0.5");
  Register("service:x://1");
  client_.Tick(now_);
  Acknowledge("10.0.0.5");
  Register("service:x://0");
  client_.Tick(now_);
  wire_.Take();
  Register("service:x://1", {"TAMRO"});
  ASSERT_EQ(registry_.Deregister("service:x://1", {"TAMRO"}, {}, Unlimited()), Error::kOk);
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
}

// A deregistration ends a URL in all languages.
TEST_F(DirectoryClientTest, WhatMovesLeavesTheOtherLanguagesBe) {
  ApplyPassive();
  Hear("10.0.0.5");
  Registration german = MakeRegistration("service:x://1", "service:x");
  german.language = "de";
  ASSERT_EQ(registry_.Register(german, now_), Error::kOk);
  Register("service:x://1");
  client_.Tick(now_);
  Acknowledge("10.0.0.5");
  Acknowledge("10.0.0.5");
  wire_.Take();
  Register("service:x://1", {"TAMRO"});
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), IsEmpty());
}

TEST_F(DirectoryClientTest, WhatIsTooLongForADatagramGoesByTcp) {
  ApplyPassive();
  Hear("10.0.0.5");
  wire_.Take();
  Register("service:x://1", {"DEFAULT"}, "(a=" + std::string(1400, 'b') + ")");
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("tcp 10.0.0.5: register service:x://1 en 3600 DEFAULT (a=bbbbbbb"));
  Acknowledge("10.0.0.5");
  EXPECT_EQ(client_.Serving({}).size(), 1U);
  Register("service:x://1", {"DEFAULT"}, "(a=" + std::string(1400, 'c') + ")");
  Advance(Seconds(15));
  EXPECT_THAT(wire_.Take(), ElementsAre("tcp 10.0.0.5: register service:x://1 en 3600 DEFAULT (a=ccccccc",
                                        "told directory agent 10.0.0.5 does not answer"));
}

TEST_F(DirectoryClientTest, ARestartHasEverythingRegisteredAnew) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  Acknowledge("10.0.0.5");
  wire_.Take();
  Hear("10.0.0.5");
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Hear("10.0.0.5", kBootTime + 1);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 has changed, scopes DEFAULT",
                                        "to 10.0.0.5: register service:x://1 en 3600 DEFAULT "));
}

TEST_F(DirectoryClientTest, OneThatGoesDownGetsNothingAnyMore) {
  ApplyPassive();
  Hear("10.0.0.5");
  Hear("10.0.0.5", 0);
  Register("service:x://1");
  Advance(Seconds(100));
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is there, scopes DEFAULT",
                                        "told directory agent 10.0.0.5 is going down"));
  EXPECT_THAT(client_.Serving({}), IsEmpty());
}

TEST_F(DirectoryClientTest, OneThatDoesNotAnswerIsForgottenAndLookedForAgain) {
  DirectoryClientSettings settings = ClientSettings();
  client_.Apply(settings, now_);
  Advance(Seconds(10));
  Register("service:x://1");
  wire_.Take();
  Hear("10.0.0.5");
  Advance(Instant(1250));
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is there, scopes DEFAULT",
                                        "to 10.0.0.5: register service:x://1 en 3600 DEFAULT ",
                                        "to 10.0.0.5: register service:x://1 en 3600 DEFAULT ",
                                        "told directory agent 10.0.0.5 does not answer", "all, but "));
  EXPECT_THAT(client_.Serving({}), IsEmpty());
}

TEST_F(DirectoryClientTest, AsksTheConfiguredOnesAndAgainAfterLongerAndLongerWaits) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.passive = false;
  settings.configured = {"10.0.0.5", "10.0.0.1"};
  client_.Apply(settings, now_);
  client_.Tick(now_);
  const std::string ask = "to 10.0.0.5: ask service:directory-agent";
  EXPECT_THAT(wire_.Take(), ElementsAre(ask));
  Advance(Seconds(2));
  EXPECT_THAT(wire_.Take(), ElementsAre(ask));
  Advance(Seconds(15));
  EXPECT_THAT(wire_.Take(), ElementsAre(ask, ask));
  Advance(Seconds(30));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(500));
  EXPECT_THAT(wire_.Take(), ElementsAre(ask));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is there, scopes DEFAULT"));
  Hear("10.0.0.5", 0);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is going down"));
  Advance(Seconds(15));
  EXPECT_THAT(wire_.Take(), ElementsAre(ask));
}

TEST_F(DirectoryClientTest, AnAdvertisementThatWasCutIsFetchedByTcp) {
  client_.Apply(ClientSettings(), now_);
  Advance(Instant(0));
  wire_.Take();
  Message cut;
  cut.header.xid = wire_.xid;
  cut.header.overflow = true;
  cut.body = DaAdvert{Error::kOk, kBootTime, "", "", "", "", {}};
  Take(cut, From("192.0.2.5"));
  EXPECT_THAT(wire_.Take(), ElementsAre("tcp 192.0.2.5: ask service:directory-agent"));
  Hear("192.0.2.5", kBootTime, "DEFAULT", wire_.xid);
  EXPECT_THAT(client_.Serving({}), ElementsAre("service:directory-agent://192.0.2.5"));
}

TEST_F(DirectoryClientTest, PassesOverWhatItDidNotAskFor) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.passive = false;
  client_.Apply(settings, now_);
  Hear("10.0.0.5");
  settings.passive = true;
  client_.Apply(settings, now_);
  Hear("10.0.0.5", kBootTime, "DEFAULT", 77);
  Hear("10.0.0.1");
  Hear("127.0.0.1");
  Hear("10.0.0.5", kBootTime, "");
  Hear("10.0.0.5", 0);
  HearAs("10.0.0.5", "10.0.0.66", kBootTime, "DEFAULT", 0);
  Message failed;
  failed.header.xid = 0;
  failed.body =
      DaAdvert{Error::kInternalError, 1, "service:directory-agent://10.0.0.5", "DEFAULT", "", "", {}};
  Take(failed, From("10.0.0.5"));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  EXPECT_THAT(client_.Serving({}), IsEmpty());
}

TEST_F(DirectoryClientTest, InventedAgentsDoNotFillTheMemory) {
  ApplyPassive();
  for (int i = 0; i < 1000; ++i) {
    Hear("10.1." + std::to_string(i / 250) + "." + std::to_string(1 + i % 250));
  }
  EXPECT_EQ(client_.Serving({}).size(), DirectoryClient::kMostAgents);
}

TEST_F(DirectoryClientTest, InventedAgentsDoNotKeepOutConfiguredOnes) {
  ApplyPassive();
  for (int i = 0; i < 100; ++i) {
    Hear("10.1.0." + std::to_string(1 + i));
  }
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  for (std::size_t i = 0; i <= DirectoryClient::kMostAgents; ++i) {
    settings.configured.push_back("10.2.0." + std::to_string(1 + i));
  }
  wire_.Take();
  client_.Apply(settings, now_);
  client_.Tick(now_);
  EXPECT_EQ(wire_.Take().size(), settings.configured.size());
  for (const std::string& address : settings.configured) {
    Hear(address, kBootTime, "DEFAULT", wire_.xid);
  }
  Hear("10.1.0.200");
  EXPECT_EQ(client_.Serving({}).size(), DirectoryClient::kMostAgents + settings.configured.size());
}

TEST_F(DirectoryClientTest, ConfiguredAgentsDoNotKeepOutOthers) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  for (std::size_t i = 0; i < DirectoryClient::kMostAgents; ++i) {
    settings.configured.push_back("10.2.0." + std::to_string(1 + i));
  }
  client_.Apply(settings, now_);
  client_.Tick(now_);
  Hear("10.1.0.1");
  EXPECT_EQ(client_.Serving({}).size(), 1U);
}

TEST_F(DirectoryClientTest, ChecksWhetherAgentsStillAnswer) {
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.check_period = Seconds(60);
  client_.Apply(settings, now_);
  Hear("10.0.0.5");
  wire_.Take();
  Advance(Seconds(60));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: ask service:directory-agent"));
  Hear("10.0.0.5", kBootTime, "DEFAULT", wire_.xid);
  Advance(Seconds(61));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: ask service:directory-agent",
                                        "to 10.0.0.5: ask service:directory-agent"));
  Advance(Seconds(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 does not answer"));
}

TEST_F(DirectoryClientTest, RefreshesNoServiceMoreOftenThanTheAgentAllows) {
  ApplyPassive();
  HearWithInterval("60");
  RegisterFor(40);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 is there, scopes DEFAULT",
                                        "to 10.0.0.5: register service:x://1 en 120 DEFAULT "))
      << "with a lifetime that lasts until it may be refreshed";
  Acknowledge("10.0.0.5");
  for (int renewals = 0; renewals < 3; ++renewals) {
    Advance(Seconds(15));
    RegisterFor(40);
    EXPECT_THAT(wire_.Take(), IsEmpty());
  }
  Register("service:x://2");
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://2 en 3600 DEFAULT "));
  Acknowledge("10.0.0.5");
  Advance(Seconds(15) - Instant(1));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Instant(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 120 DEFAULT "));
}

// Its refresh comes due while the agent keeps the deregistration waiting.
TEST_F(DirectoryClientTest, WhatEndsIsNotRefreshedInstead) {
  ApplyPassive();
  HearWithInterval("60");
  RegisterFor(40);
  Acknowledge("10.0.0.5");
  Advance(Seconds(30));
  RegisterFor(40);
  Advance(Seconds(30) - Instant(200));
  Register("service:x://2");
  client_.Tick(now_);
  wire_.Take();
  ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  Advance(Instant(300));
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
}

TEST_F(DirectoryClientTest, WhatEndsEndsAtAnAgentWithAnInterval) {
  ApplyPassive();
  HearWithInterval("60");
  RegisterFor(10);
  Acknowledge("10.0.0.5");
  wire_.Take();
  Advance(Seconds(5));
  RegisterFor(10);
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(10));
  registry_.Expire(now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
  Acknowledge("10.0.0.5");
  RegisterFor(10);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 120 DEFAULT "))
      << "a new one is no refresh";
  Acknowledge("10.0.0.5");
  Advance(Seconds(100));
  EXPECT_THAT(wire_.Take(), IsEmpty()) << "nothing is left of the one that waited";
}

TEST_F(DirectoryClientTest, TheIntervalIsTheLatestAdvertisements) {
  ApplyPassive();
  HearWithInterval("60");
  RegisterFor(100);
  Acknowledge("10.0.0.5");
  Advance(Seconds(10));
  RegisterFor(100);
  wire_.Take();
  HearWithInterval("30");
  Advance(Seconds(19));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Hear("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 81 DEFAULT "));
}

TEST_F(DirectoryClientTest, ARestartedAgentHasNothingToRefresh) {
  ApplyPassive();
  HearWithInterval("60");
  RegisterFor(200);
  Acknowledge("10.0.0.5");
  Advance(Seconds(10));
  wire_.Take();
  Hear("10.0.0.5", kBootTime + 1);
  EXPECT_THAT(wire_.Take(), ElementsAre("told directory agent 10.0.0.5 has changed, scopes DEFAULT",
                                        "to 10.0.0.5: register service:x://1 en 190 DEFAULT "));
}

TEST_F(DirectoryClientTest, OtherScopesHaveEverythingRegisteredAnew) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  Acknowledge("10.0.0.5");
  wire_.Take();
  DirectoryClientSettings settings = ClientSettings();
  settings.active = false;
  settings.scopes = {"DEFAULT"};
  client_.Apply(settings, now_);
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT "));
}

TEST_F(DirectoryClientTest, TakesItsServicesAlong) {
  ApplyPassive();
  Register("service:x://1", {"DEFAULT", "TAMRO"});
  Register("service:x://2", {"DEFAULT"}, "", RegistrationSource::kAgent);
  Register("service:x://3");
  Hear("10.0.0.5");
  wire_.Take();
  client_.Leave(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
  EXPECT_FALSE(client_.left());
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://3 DEFAULT"));
  Hear("10.0.0.6");
  EXPECT_FALSE(client_.left());
  Acknowledge("10.0.0.5", Error::kInvalidRegistration);
  EXPECT_TRUE(client_.left());
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

// What has been deregistered just before is gone there, too.
TEST_F(DirectoryClientTest, TellsWhatHasEndedBeforeItEnds) {
  ApplyPassive();
  Hear("10.0.0.5");
  for (const char* url : {"service:x://1", "service:x://2"}) {
    Register(url);
    client_.Tick(now_);
    Acknowledge("10.0.0.5");
  }
  Register("service:x://3");
  for (const char* url : {"service:x://1", "service:x://2"}) {
    ASSERT_EQ(registry_.Deregister(url, {"DEFAULT"}, {}, Unlimited()), Error::kOk);
  }
  wire_.Take();
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://1 DEFAULT"));
  client_.Leave(now_);
  EXPECT_THAT(wire_.Take(), IsEmpty()) << "that is under way";
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://2 DEFAULT"));
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: deregister service:x://3 DEFAULT"));
  Acknowledge("10.0.0.5");
  EXPECT_TRUE(client_.left());
}

TEST_F(DirectoryClientTest, DoesNotWaitForAnAgentThatIsGone) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  client_.Leave(now_);
  Advance(Instant(1250));
  EXPECT_TRUE(client_.left());
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

}  // namespace
}  // namespace slp
