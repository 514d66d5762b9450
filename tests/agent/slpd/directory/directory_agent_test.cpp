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
      ASSERT_EQ(daemon.Register(MakeSrvReg(row.url, "service:x")), Error::kOk);
      EXPECT_EQ(daemon.Ask(Gone(row.url), row.origin), ReplyOf(SrvAck{expected})) << row.url << check;
      EXPECT_EQ(daemon.registry.size(), expected == Error::kOk ? 0U : 1U) << row.url << check;
    }
  }
}

TEST(DirectoryAgentTest, RemembersWhoseServicesTheyAre) {
  DirectoryLogic daemon;
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
