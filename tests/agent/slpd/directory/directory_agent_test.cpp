// The daemon's logic in the role of a directory agent.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"
#include "slpd/directory/advertisement.h"

namespace slp {
namespace {

constexpr const char* kAgentType = "service:directory-agent";
constexpr std::uint32_t kBootTime = 1'700'000'000;

AgentSettings DirectorySettings() {
  AgentSettings settings = TestSettings();
  settings.directory_agent = true;
  settings.directory_agent_attributes = "(room=7)";
  settings.boot_timestamp = kBootTime;
  return settings;
}

struct DirectoryLogic : DaemonLogic {
  DirectoryLogic() { handler.SetSettings(DirectorySettings()); }

  void CheckSourceAddress(bool check) {
    AgentSettings settings = DirectorySettings();
    settings.check_source_address = check;
    handler.SetSettings(settings);
  }
};

DaAdvert Advert(Error error = Error::kOk) {
  return {.error = error,
          .boot_timestamp = kBootTime,
          .url = "service:directory-agent://10.0.0.1",
          .scopes = "DEFAULT,TAMRO",
          .attributes = "(room=7)",
          .spi = {},
          .authentication = {}};
}

struct AskCase {
  const char* predicate;
  const char* scopes;
  const char* spi;
  std::optional<Body> unicast;
  bool multicast;  // answered, with the same
};

TEST(DirectoryAgentTest, AdvertisesItselfByScopePredicateAndKey) {
  const AskCase cases[] = {
      {"", "", "", Advert(), true},
      {"", "default", "", Advert(), true},
      {"", "other,TAMRO", "", Advert(), true},
      {"", "other", "", Advert(Error::kScopeNotSupported), false},
      {"", "", "key", Advert(Error::kAuthenticationUnknown), false},
      {"(room=7)", "", "", Advert(), true},
      {"(room=8)", "", "", SrvRply{}, false},
      {"(room=8", "", "", Advert(Error::kParseError), false},
  };
  for (const AskCase& row : cases) {
    DirectoryLogic daemon;
    SrvRqst request = MakeSrvRqst(kAgentType, row.predicate, row.scopes);
    request.spi = row.spi;
    EXPECT_EQ(daemon.Ask(request, kNeighbour), ReplyOf(*row.unicast)) << row.predicate << row.scopes;
    EXPECT_EQ(daemon.Ask(request, kGroupMember), row.multicast ? ReplyOf(*row.unicast) : std::nullopt)
        << row.predicate << row.scopes;
  }
}

TEST(DirectoryAgentTest, ThePreviousResponderIsSilent) {
  DirectoryLogic daemon;
  SrvRqst request = MakeSrvRqst(kAgentType);
  request.previous_responders = "10.0.0.1";
  EXPECT_EQ(daemon.Ask(request, kGroupMember), std::nullopt);
}

TEST(DirectoryAgentTest, TheAddressIsTheOneThatTheSenderReaches) {
  DirectoryLogic daemon;
  RequestOrigin origin = kGroupMember;
  origin.local_address = "172.16.0.1";
  DaAdvert advert = Advert();
  advert.url = "service:directory-agent://172.16.0.1";
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kAgentType), origin), ReplyOf(advert));
}

TEST(DirectoryAgentTest, OtherHostsHearOfItOnceItsBootTimestampIsItsOwn) {
  DirectoryLogic daemon;
  AgentSettings settings = DirectorySettings();
  settings.announced_from = daemon.now + Instant(1);
  daemon.handler.SetSettings(settings);
  RequestOrigin own_group_member = kOwnHost;
  own_group_member.transport = Transport::kUdpMulticast;
  for (const RequestOrigin& origin : {kNeighbour, kGroupMember, own_group_member}) {
    EXPECT_EQ(daemon.Ask(MakeSrvRqst(kAgentType), origin), std::nullopt) << origin.address;
  }
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kAgentType), kOwnHost), ReplyOf(Advert()));
  daemon.now += Instant(1);
  for (const RequestOrigin& origin : {kNeighbour, kGroupMember, own_group_member}) {
    EXPECT_EQ(daemon.Ask(MakeSrvRqst(kAgentType), origin), ReplyOf(Advert())) << origin.address;
  }
}

TEST(DirectoryAgentTest, AStreamWaitsUntilOthersMayHearOfIt) {
  DirectoryLogic daemon;
  AgentSettings settings = DirectorySettings();
  settings.announced_from = daemon.now + Instant(700);
  daemon.handler.SetSettings(settings);
  const Bytes asks_for_agents = Encode(MakeMessage(MakeSrvRqst("Service:Directory-Agent"))).value();
  const Bytes asks_for_services = Encode(MakeMessage(MakeSrvRqst("service:x"))).value();
  RequestOrigin own_stream = kOwnHost;
  own_stream.transport = Transport::kTcp;
  const auto wait = [&](const Bytes& request, const RequestOrigin& origin) {
    return daemon.handler.WaitBefore(request, origin, daemon.now);
  };
  EXPECT_EQ(wait(asks_for_agents, kStreamPeer), Instant(700));
  EXPECT_EQ(wait(asks_for_services, kStreamPeer), Instant(0));
  EXPECT_EQ(wait({1, 2, 3}, kStreamPeer), Instant(0));
  EXPECT_EQ(wait(asks_for_agents, kNeighbour), Instant(0)) << "asks again by itself";
  EXPECT_EQ(wait(asks_for_agents, own_stream), Instant(0));
  daemon.now += Instant(699);
  EXPECT_EQ(wait(asks_for_agents, kStreamPeer), Instant(1));
  daemon.now += Instant(1);
  EXPECT_EQ(wait(asks_for_agents, kStreamPeer), Instant(0));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kAgentType), kStreamPeer), ReplyOf(Advert()));
  settings.announced_from += Seconds(5);
  settings.directory_agent = false;
  daemon.handler.SetSettings(settings);
  EXPECT_EQ(wait(asks_for_agents, kStreamPeer), Instant(0));
}

TEST(DirectoryAgentTest, WhatNobodyAskedForHasNoXid) {
  Message expected = MakeMessage(Advert());
  expected.header.xid = 0;
  EXPECT_EQ(MakeUnsolicitedAdvertisement(DirectorySettings(), "10.0.0.1", false), expected);
  std::get<DaAdvert>(expected.body).boot_timestamp = 0;
  EXPECT_EQ(MakeUnsolicitedAdvertisement(DirectorySettings(), "10.0.0.1", true), expected);
}

Message FreshFrom(const std::string& url) {
  Message message = MakeMessage(MakeSrvReg(url, "service:x"));
  message.header.fresh = true;
  return message;
}

Message Gone(const std::string& url) {
  return MakeMessage(SrvDereg{"DEFAULT", {0, url, {}}, {}});
}

struct SenderCase {
  const char* url;
  RequestOrigin origin;
  Error checked;    // with net.slp.checkSourceAddr
  Error unchecked;  // without
};

TEST(DirectoryAgentTest, TakesTheServicesOfItsNetworks) {
  const Error refused = Error::kMessageNotSupported;
  const SenderCase cases[] = {
      {"service:x://10.0.0.7", kNeighbour, Error::kOk, Error::kOk},
      {"service:x://10.0.0.7:80/a", kNeighbour, Error::kOk, Error::kOk},
      {"service:x://some.name", kNeighbour, Error::kOk, Error::kOk},
      {"service:x://10.0.0.8", kNeighbour, Error::kInvalidRegistration, Error::kOk},
      {"service:x://10.0.0.010", kNeighbour, Error::kInvalidRegistration, Error::kOk},
      {"service:x://167772168", kNeighbour, Error::kInvalidRegistration, Error::kOk},
      {"service:x://10.0.0.8", kOwnHost, Error::kOk, Error::kOk},
      {"service:x://192.0.2.9", kStranger, refused, refused},
      {"service:x://192.0.2.9", kStreamPeer, refused, refused},
  };
  for (const SenderCase& row : cases) {
    for (const bool check : {true, false}) {
      DirectoryLogic daemon;
      daemon.CheckSourceAddress(check);
      const Error expected = check ? row.checked : row.unchecked;
      EXPECT_EQ(daemon.Ask(FreshFrom(row.url), row.origin), ReplyOf(SrvAck{expected})) << row.url << check;
      EXPECT_EQ(daemon.registry.size(), expected == Error::kOk ? 1U : 0U) << row.url << check;
      if (expected != Error::kOk) {
        ASSERT_EQ(daemon.Register(MakeSrvReg(row.url, "service:x")), Error::kOk);
      }
      EXPECT_EQ(daemon.Ask(Gone(row.url), row.origin), ReplyOf(SrvAck{expected})) << row.url << check;
      EXPECT_EQ(daemon.registry.size(), expected == Error::kOk ? 0U : 1U) << row.url << check;
    }
  }
}

constexpr const char* kNamed = "service:x://some.name";

/// A fresh registration, an update, a new language and both kinds of deregistration.
std::vector<Message> Changes() {
  Message german = FreshFrom(kNamed);
  german.header.language = "de";
  return {FreshFrom(kNamed), MakeMessage(MakeSrvReg(kNamed, "service:x", "(a=2)")), german,
          MakeMessage(SrvDereg{"DEFAULT", {0, kNamed, {}}, "a"}), Gone(kNamed)};
}

/// Who has registered something, who comes to change it, and whether that goes.
struct OwnerCase {
  RequestOrigin owner;
  RequestOrigin sender;
  bool changes;
};

std::vector<OwnerCase> OwnerCases() {
  RequestOrigin other_neighbour = kNeighbour;
  other_neighbour.address = "10.0.0.8";
  RequestOrigin own_address = kOwnHost;
  own_address.address = "10.0.0.1";
  RequestOrigin by_stream = kNeighbour;
  by_stream.transport = Transport::kTcp;
  return {
      {kOwnHost, kOwnHost, true},    {kOwnHost, own_address, true},        {own_address, kOwnHost, true},
      {kOwnHost, kNeighbour, false}, {own_address, by_stream, false},      {kNeighbour, kNeighbour, true},
      {kNeighbour, by_stream, true}, {kNeighbour, other_neighbour, false}, {kNeighbour, kOwnHost, true},
  };
}

TEST(DirectoryAgentTest, OnlyWhoMadeARegistrationAndTheOwnHostChangeIt) {
  for (const OwnerCase& row : OwnerCases()) {
    for (const Message& change : Changes()) {
      for (const bool check : {true, false}) {
        DirectoryLogic daemon;
        daemon.CheckSourceAddress(check);
        Message first = MakeMessage(MakeSrvReg(kNamed, "service:x", "(a=1)"));
        first.header.fresh = true;
        ASSERT_EQ(daemon.Ask(first, row.owner), ReplyOf(SrvAck{}));
        static_cast<void>(daemon.events.Take());
        const bool changes = row.changes || !check;
        EXPECT_EQ(daemon.Ask(change, row.sender),
                  ReplyOf(SrvAck{changes ? Error::kOk : Error::kInvalidRegistration}, change.header.language))
            << row.owner.address << ' ' << row.sender.address << check;
        // What came in, what happened, what went out.
        EXPECT_EQ(daemon.events.Take().size(), changes ? 3U : 2U);
      }
    }
  }
}

TEST(DirectoryAgentTest, WhatTheFileRegistersIsTheOwnHosts) {
  DirectoryLogic daemon;
  Registration registration = MakeRegistration(kNamed, "service:x");
  registration.source = RegistrationSource::kFile;
  ASSERT_EQ(daemon.registry.Register(registration, daemon.now), Error::kOk);
  for (const Message& change : {FreshFrom(kNamed), Gone(kNamed)}) {
    EXPECT_EQ(daemon.Ask(change), ReplyOf(SrvAck{Error::kInvalidRegistration}));
  }
  EXPECT_EQ(daemon.registry.Find(kNamed, "en")->source, RegistrationSource::kFile);
}

TEST(DirectoryAgentTest, WhatHasEndedIsNobodysAnyMore) {
  DirectoryLogic daemon;
  RequestOrigin other_neighbour = kNeighbour;
  other_neighbour.address = "10.0.0.8";
  ASSERT_EQ(daemon.Ask(FreshFrom(kNamed)), ReplyOf(SrvAck{}));
  daemon.now += Seconds(3601);
  EXPECT_EQ(daemon.Ask(FreshFrom(kNamed), other_neighbour), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(Gone(kNamed), other_neighbour), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(FreshFrom(kNamed)), ReplyOf(SrvAck{}));
}

TEST(DirectoryAgentTest, RefusesUpdatesMoreOftenThanItAdvertises) {
  DirectoryLogic daemon;
  AgentSettings settings = DirectorySettings();
  settings.min_refresh_interval = Seconds(60);
  daemon.handler.SetSettings(settings);
  const Message update = MakeMessage(MakeSrvReg(kNamed, "service:x", "(a=2)"));
  const Message without_a = MakeMessage(SrvDereg{"DEFAULT", {0, kNamed, {}}, "a"});
  ASSERT_EQ(daemon.Ask(FreshFrom(kNamed)), ReplyOf(SrvAck{}));
  daemon.now += Seconds(60) - Instant(1);
  EXPECT_EQ(daemon.Ask(update), ReplyOf(SrvAck{Error::kRefreshRejected}));
  EXPECT_EQ(daemon.Ask(without_a), ReplyOf(SrvAck{Error::kRefreshRejected}));
  EXPECT_EQ(daemon.registry.Find(kNamed, "en")->attributes, "");
  daemon.now += Instant(1);
  EXPECT_EQ(daemon.Ask(update), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(update), ReplyOf(SrvAck{Error::kRefreshRejected}));
  EXPECT_EQ(daemon.Ask(update, kOwnHost), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(FreshFrom(kNamed), kOwnHost), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(Gone(kNamed), kOwnHost), ReplyOf(SrvAck{}));
  ASSERT_EQ(daemon.Ask(FreshFrom(kNamed)), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.Ask(FreshFrom(kNamed)), ReplyOf(SrvAck{})) << "a fresh one is no update";
  EXPECT_EQ(daemon.Ask(Gone(kNamed)), ReplyOf(SrvAck{}));
}

TEST(DirectoryAgentTest, RemembersWhoseServicesTheyAre) {
  DirectoryLogic daemon;
  daemon.CheckSourceAddress(false);
  RequestOrigin agent_of_this_host = kOwnHost;
  agent_of_this_host.address = "127.0.0.9";
  RequestOrigin own_address = kOwnHost;
  own_address.address = "10.0.0.1";
  const std::pair<RequestOrigin, RegistrationSource> cases[] = {
      {kOwnHost, RegistrationSource::kMessage},
      {own_address, RegistrationSource::kMessage},
      {agent_of_this_host, RegistrationSource::kAgent},
      {kNeighbour, RegistrationSource::kAgent},
  };
  for (const auto& [origin, source] : cases) {
    ASSERT_EQ(daemon.Ask(FreshFrom("service:x://some.name"), origin), ReplyOf(SrvAck{}));
    EXPECT_EQ(daemon.registry.Find("service:x://some.name", "en")->source, source) << origin.address;
  }
}

TEST(DirectoryAgentTest, ServicesOfOtherHostsExpireAndAreBoundToNoProcess) {
  DirectoryLogic daemon;
  Message message = FreshFrom("service:x://10.0.0.7");
  message.header.extensions = {{kExtensionProcessId, {0, 0, 0, 1}}};
  ASSERT_EQ(daemon.Ask(message), ReplyOf(SrvAck{}));
  EXPECT_EQ(daemon.registry.Find("service:x://10.0.0.7", "en")->process_id, 0U);
  daemon.registry.Expire(daemon.now + Seconds(3601));
  EXPECT_EQ(daemon.registry.size(), 0U);
}

TEST(DirectoryAgentTest, AServiceAgentTakesNothingFromOthers) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Ask(FreshFrom("service:x://10.0.0.7")), ReplyOf(SrvAck{Error::kMessageNotSupported}));
  EXPECT_EQ(daemon.Ask(Gone("service:x://10.0.0.7")), ReplyOf(SrvAck{Error::kMessageNotSupported}));
}

}  // namespace
}  // namespace slp
