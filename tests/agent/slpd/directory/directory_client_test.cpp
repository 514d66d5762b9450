#include "slpd/directory/directory_client.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t kBootTime = 1000;

// One line for each thing that leaves, and the transaction id of what left last.
class RecordedWire : public DirectoryWire {
 public:
  void SendToAll(const std::function<Message(bool loopback)>& message) override {
    const Message sent = message(true);
    xid = sent.header.xid;
    lines_.push_back("all, but " + std::get<SrvRqst>(sent.body).previous_responders);
    beyond_host = std::get<SrvRqst>(message(false).body).previous_responders;
  }
  void Send(const DirectoryPeer& peer, const Message& message) override {
    Record("to " + peer.address, message);
  }
  void SendByStream(const DirectoryPeer& peer, const Message& message) override {
    Record("tcp " + peer.address, message);
  }
  void Tell(bool problem, const std::string& text) override {
    lines_.push_back((problem ? "problem " : "told ") + text);
  }

  std::vector<std::string> Take() { return std::exchange(lines_, {}); }

  std::uint16_t xid = 0;
  std::string beyond_host;

 private:
  void Record(const std::string& how, const Message& message) {
    xid = message.header.xid;
    std::string what;
    if (const auto* registration = std::get_if<SrvReg>(&message.body)) {
      what = std::string("register ") + (message.header.fresh ? "" : "not fresh ") + registration->url.url +
             " " + message.header.language + " " + std::to_string(registration->url.lifetime) + " " +
             registration->scopes + " " + registration->attributes.substr(0, 10);
    } else if (const auto* end = std::get_if<SrvDereg>(&message.body)) {
      what = "deregister " + end->url.url + " " + end->scopes;
    } else {
      what = "ask " + std::get<SrvRqst>(message.body).service_type;
    }
    lines_.push_back(how + ": " + what);
  }

  std::vector<std::string> lines_;
};

// Tells the client of what happens in the registry, as the server does.
class ForwardedEvents : public RecordedEvents {
 public:
  void OnRegistration(RegistrationEvent event, const RegistrationView& registration) override {
    if (client != nullptr) {
      client->OnRegistration(event, registration);
    }
  }
  DirectoryClient* client = nullptr;
};

DirectoryClientSettings ClientSettings() {
  DirectoryClientSettings settings;
  settings.discovery_waits = {Instant(500), Instant(750), Instant(1000)};
  settings.datagram_waits = {Instant(500), Instant(750)};
  settings.scopes = {"DEFAULT", "TAMRO"};
  settings.own_addresses = {"10.0.0.1", "127.0.0.1"};
  return settings;
}

class DirectoryClientTest : public testing::Test {
 protected:
  DirectoryClientTest() { events_.client = &client_; }

  // Each random number is `random_`; each XID that follows from it, one more.
  std::uint32_t Random() { return random_; }

  void Register(const std::string& url, std::vector<std::string> scopes = {"DEFAULT"},
                const std::string& attributes = "",
                RegistrationSource source = RegistrationSource::kMessage) {
    Registration registration = MakeRegistration(url, "service:x", attributes);
    registration.scopes = std::move(scopes);
    registration.source = source;
    ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
  }

  void Advance(Instant by) {
    const Instant end = now_ + by;
    while (const auto next = client_.NextDue(now_)) {
      if (*next > end) {
        break;
      }
      now_ = std::max(now_, *next);
      client_.Tick(now_);
    }
    now_ = end;
    client_.Tick(now_);
  }

  void Hear(const std::string& address, std::uint32_t boot = kBootTime, const std::string& scopes = "DEFAULT",
            std::uint16_t xid = 0) {
    HearAs(address, address, boot, scopes, xid);
  }

  void HearAs(const std::string& sender, const std::string& in_url, std::uint32_t boot,
              const std::string& scopes, std::uint16_t xid, const std::string& attributes = "") {
    Message message;
    message.header.xid = xid;
    message.body =
        DaAdvert{Error::kOk, boot, "service:directory-agent://" + in_url, scopes, attributes, "", {}};
    client_.OnAdvertisement(message, From(sender), now_);
    client_.Tick(now_);
  }

  // An agent that wants no service more often than so.
  void HearWithInterval(const std::string& interval) {
    HearAs("10.0.0.5", "10.0.0.5", kBootTime, "DEFAULT", 0, "(min-refresh-interval=" + interval + ")");
  }

  void RegisterFor(std::uint16_t lifetime) {
    Registration registration = MakeRegistration("service:x://1", "service:x");
    registration.lifetime = lifetime;
    ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
    client_.Tick(now_);
  }

  void Acknowledge(const std::string& address, Error error = Error::kOk) {
    Message message;
    message.header.xid = wire_.xid;
    message.body = SrvAck{error};
    client_.OnAcknowledgment(message, From(address), now_);
  }

  static RequestOrigin From(const std::string& address) {
    return {address, false, true, Transport::kUdpUnicast, "10.0.0.1"};
  }

  // Settings without an active search of its own.
  void ApplyPassive() {
    DirectoryClientSettings settings = ClientSettings();
    settings.active = false;
    client_.Apply(settings, now_);
  }

  std::uint32_t random_ = 0;
  Instant now_{Seconds(100)};
  ForwardedEvents events_;
  Registry registry_{events_};
  RecordedWire wire_;
  DirectoryClient client_{registry_, wire_, [this] { return Random(); }};
};

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
  Acknowledge("10.0.0.5", Error::kDaBusyNow);
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Acknowledge("10.0.0.5");
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://2 en 3600 DEFAULT "));
}

TEST_F(DirectoryClientTest, ARefusalIsToldAndCostsTheOthersNothing) {
  ApplyPassive();
  Register("service:x://1");
  Register("service:x://2");
  Hear("10.0.0.5");
  wire_.Take();
  Acknowledge("10.0.0.5", Error::kInvalidRegistration);
  EXPECT_THAT(wire_.Take(), ElementsAre("problem directory agent 10.0.0.5 refuses service:x://1: error 3",
                                        "to 10.0.0.5: register service:x://2 en 3600 DEFAULT "));
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
  ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT", "TAMRO"}, {}), Error::kOk);
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
  ASSERT_EQ(registry_.Deregister("service:x://1", {"DEFAULT"}, {}), Error::kOk);
  Register("service:x://1", {"DEFAULT"}, "(a=3)");
  client_.Tick(now_);
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 3600 DEFAULT (a=3)"));
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
  client_.OnAdvertisement(cut, From("192.0.2.5"), now_);
  client_.Tick(now_);
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
  client_.OnAdvertisement(failed, From("10.0.0.5"), now_);
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

TEST_F(DirectoryClientTest, WhatNeverExpiresIsRegisteredAgainInTime) {
  ApplyPassive();
  Hear("10.0.0.5");
  Registration registration = MakeRegistration("service:x://1", "service:x");
  registration.permanent = true;
  registration.lifetime = kMaximumLifetime;
  registration.source = RegistrationSource::kFile;
  ASSERT_EQ(registry_.Register(registration, now_), Error::kOk);
  client_.Tick(now_);
  Acknowledge("10.0.0.5");
  wire_.Take();
  Advance(Seconds(32766));
  EXPECT_THAT(wire_.Take(), IsEmpty());
  Advance(Seconds(1));
  EXPECT_THAT(wire_.Take(), ElementsAre("to 10.0.0.5: register service:x://1 en 65535 DEFAULT "));
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

TEST_F(DirectoryClientTest, DoesNotWaitForAnAgentThatIsGone) {
  ApplyPassive();
  Register("service:x://1");
  Hear("10.0.0.5");
  client_.Leave(now_);
  Advance(Instant(1250));
  EXPECT_TRUE(client_.left());
  EXPECT_EQ(client_.NextDue(now_), std::nullopt);
}

TEST(DirectoryClientSettingsTest, ComesFromTheProperties) {
  Properties properties;
  properties.Set("net.slp.DAAddresses", "10.0.0.5, some.name,10.0.0.6,10.0.0.256,host-2,a_b,.x");
  properties.Set("net.slp.DAActiveDiscoveryInterval", "60");
  properties.Set("net.slp.DADiscoveryTimeouts", "10,20");
  properties.Set("net.slp.datagramTimeouts", "30");
  properties.Set("net.slp.passiveDADetection", "false");
  properties.Set("net.slp.staleDACheckPeriod", "7");
  std::vector<std::string> problems;
  DirectoryClientSettings expected;
  expected.configured = {"10.0.0.5", "10.0.0.6"};
  expected.names = {"some.name", "host-2"};
  expected.passive = false;
  expected.interval = Seconds(60);
  expected.discovery_waits = {Instant(10), Instant(20)};
  expected.datagram_waits = {Instant(30)};
  expected.check_period = Seconds(7);
  expected.scopes = {"DEFAULT", "TAMRO"};
  expected.own_addresses = {"10.0.0.1", "127.0.0.1"};
  EXPECT_EQ(DirectoryClientSettings::From(properties, TestSettings(), problems), expected);
  EXPECT_THAT(problems,
              ElementsAre("net.slp.DAAddresses names 10.0.0.256, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names a_b, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names .x, which is no IPv4 address; it is not used"));
}

TEST(DirectoryClientSettingsTest, TakesIpv6AddressesWhereTheyAreInUse) {
  Properties properties;
  properties.Set("net.slp.DAAddresses", "10.0.0.5,2001:db8::5,a_b");
  std::vector<std::string> problems;
  EXPECT_THAT(DirectoryClientSettings::From(properties, TestSettings(), problems).configured,
              ElementsAre("10.0.0.5"));
  EXPECT_THAT(problems,
              ElementsAre("net.slp.DAAddresses names 2001:db8::5, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names a_b, which is no IPv4 address; it is not used"));
  problems.clear();
  properties.Set("net.slp.useIPv6", "true");
  EXPECT_THAT(DirectoryClientSettings::From(properties, TestSettings(), problems).configured,
              ElementsAre("10.0.0.5", "2001:db8::5"));
  EXPECT_THAT(problems, ElementsAre("net.slp.DAAddresses names a_b, which is no IP address; it is not used"));
}

}  // namespace
}  // namespace slp
