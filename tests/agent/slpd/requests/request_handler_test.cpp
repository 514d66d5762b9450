// What holds for every message: malformed ones, groups, sizes, languages, expiry, events.
#include "slpd/requests/request_handler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

using ::testing::ElementsAre;

/// One request of each kind, and the error reply that belongs to it.
struct Kind {
  Body request;
  Body (*error_reply)(Error);
};

std::vector<Kind> Kinds() {
  const auto acknowledge = [](Error error) -> Body { return SrvAck{error}; };
  return {
      {MakeSrvRqst("service:x"),
       [](Error error) -> Body {
         return SrvRply{error, {}};
       }},
      {MakeAttrRqst("service:x"),
       [](Error error) -> Body {
         return AttrRply{error, {}, {}};
       }},
      {SrvTypeRqst{{}, std::nullopt, "DEFAULT"},
       [](Error error) -> Body {
         return SrvTypeRply{error, {}};
       }},
      {MakeSrvReg("service:x://1", "service:x"), acknowledge},
      {SrvDereg{"DEFAULT", {0, "service:x://1", {}}, ""}, acknowledge},
  };
}

struct Damage {
  const char* what;
  void (*damage)(Bytes&);
  Error error;
};

const Damage kDamages[] = {
    {"version 1", [](Bytes& bytes) { bytes[0] = 1; }, Error::kVersionNotSupported},
    {"version 3", [](Bytes& bytes) { bytes[0] = 3; }, Error::kVersionNotSupported},
    {"one byte less", [](Bytes& bytes) { bytes.pop_back(); }, Error::kParseError},
    {"one byte more", [](Bytes& bytes) { bytes.push_back(0); }, Error::kParseError},
    {"length too small", [](Bytes& bytes) { --bytes[4]; }, Error::kParseError},
    {"language past the end", [](Bytes& bytes) { bytes[12] = 0xFF; }, Error::kParseError},
    {"extension offset past the end", [](Bytes& bytes) { bytes[8] = 0xFF; }, Error::kParseError},
    {"first field past the end",
     [](Bytes& bytes) {
       bytes[16] = 0xFF;
       bytes[17] = 0xFF;
       bytes[18] = 0xFF;
       bytes[19] = 0xFF;
       bytes[20] = 0xFF;
     },
     Error::kParseError},
};

Bytes Damaged(const Kind& kind, const Damage& row) {
  Bytes request = Encode(MakeMessage(kind.request)).value();
  row.damage(request);
  return request;
}

TEST(RequestHandlerTest, AMalformedRequestGetsTheErrorReplyOfItsKind) {
  for (const Kind& kind : Kinds()) {
    for (const Damage& row : kDamages) {
      DaemonLogic daemon;
      EXPECT_EQ(daemon.Send(Damaged(kind, row), kOwnHost), ReplyOf(kind.error_reply(row.error))) << row.what;
      EXPECT_EQ(daemon.registry.size(), 0U);
    }
  }
}

TEST(RequestHandlerTest, AMalformedRequestToAGroupGetsNothing) {
  for (const Kind& kind : Kinds()) {
    for (const Damage& row : kDamages) {
      DaemonLogic daemon;
      Bytes request = Damaged(kind, row);
      EXPECT_EQ(daemon.Send(request, kGroupMember), std::nullopt) << row.what;
      EXPECT_THAT(daemon.events.Take(), ElementsAre("dropped multicast and malformed"));
      request[5] |= 0x20;
      EXPECT_EQ(daemon.Send(request, kOwnHost), std::nullopt) << row.what;
      EXPECT_THAT(daemon.events.Take(), ElementsAre("dropped multicast and malformed"));
    }
  }
}

TEST(RequestHandlerTest, AnErrorReplyKeepsTheLanguageThatCanBeRead) {
  DaemonLogic daemon;
  Result<Bytes> request = Encode(MakeMessage(MakeSrvRqst("service:x"), "de-AT"));
  ASSERT_TRUE(request);
  request->push_back(0);
  EXPECT_EQ(daemon.Send(*request, kOwnHost), ReplyOf(SrvRply{Error::kParseError, {}}, "de-AT"));
}

TEST(RequestHandlerTest, AnUnknownMandatoryExtensionIsRefused) {
  for (const Kind& kind : Kinds()) {
    DaemonLogic daemon;
    Message request = MakeMessage(kind.request);
    request.header.extensions = {{0x4002, {1, 2, 3}}};
    EXPECT_EQ(daemon.Ask(request, kOwnHost), ReplyOf(kind.error_reply(Error::kOptionNotUnderstood)));
  }
}

TEST(RequestHandlerTest, AnUnknownOptionalExtensionIsPassedOver) {
  DaemonLogic daemon;
  Message request = MakeMessage(MakeSrvRqst("service:x"));
  request.header.extensions = {{0x0002, {1, 2, 3}}, {0x8001, {}}};
  EXPECT_EQ(daemon.Ask(request), ReplyOf(SrvRply{}));
}

TEST(RequestHandlerTest, ALanguageThatIsNoneIsAnError) {
  for (const char* language : {"", "e n", "toolonglanguage"}) {
    for (const Kind& kind : Kinds()) {
      DaemonLogic daemon;
      const bool registration = std::holds_alternative<SrvReg>(kind.request);
      EXPECT_EQ(daemon.Ask(MakeMessage(kind.request, language), kOwnHost),
                ReplyOf(kind.error_reply(registration ? Error::kInvalidRegistration : Error::kParseError),
                        language))
          << language;
    }
  }
}

TEST(RequestHandlerTest, WhatIsNoRequestIsDropped) {
  const Body bodies[] = {
      SrvRply{},  SrvAck{},
      AttrRply{}, SrvTypeRply{},
      SaAdvert{}, DaAdvert{Error::kOk, 5, "service:directory-agent://h", "DEFAULT", "", "", {}}};
  for (const Body& body : bodies) {
    DaemonLogic daemon;
    EXPECT_EQ(daemon.Ask(body), std::nullopt);
    EXPECT_THAT(daemon.events.Take(), ElementsAre(::testing::StartsWith("in "), "dropped no request"));
    Result<Bytes> damaged = Encode(MakeMessage(body));
    ASSERT_TRUE(damaged);
    damaged->push_back(0);
    EXPECT_EQ(daemon.Send(*damaged, kNeighbour), std::nullopt);
    EXPECT_THAT(daemon.events.Take(), ElementsAre("dropped malformed, and of a kind that has no reply"));
  }
}

TEST(RequestHandlerTest, AnUnknownFunctionIsDropped) {
  for (const int function : {0, 12, 255}) {
    DaemonLogic daemon;
    Result<Bytes> request = Encode(MakeMessage(MakeSrvRqst("service:x")));
    ASSERT_TRUE(request);
    (*request)[1] = static_cast<std::uint8_t>(function);
    EXPECT_EQ(daemon.Send(*request, kOwnHost), std::nullopt);
  }
}

TEST(RequestHandlerTest, LessThanAHeaderIsDropped) {
  const Result<Bytes> request = Encode(MakeMessage(MakeSrvRqst("service:x")));
  ASSERT_TRUE(request);
  for (std::size_t size = 0; size < 12; ++size) {
    DaemonLogic daemon;
    EXPECT_EQ(daemon.Send(Bytes(request->begin(), request->begin() + static_cast<int>(size)), kOwnHost),
              std::nullopt);
    EXPECT_THAT(daemon.events.Take(), ElementsAre("dropped too short for a header"));
  }
}

struct ResponderCase {
  const char* list;
  bool answered;
};

TEST(RequestHandlerTest, APreviousResponderIsSilent) {
  const ResponderCase cases[] = {
      {"", true},
      {"10.0.0.1", false},
      {"10.0.0.9, 10.0.0.1 ,10.0.0.8", false},
      {"10.0.0.9,10.0.0.11", true},
      {"not an address,,10.0.0.1", false},
      {"10.0.0.1.5", true},
  };
  for (const ResponderCase& row : cases) {
    DaemonLogic daemon;
    daemon.Register(MakeSrvReg("service:x://1", "service:x", "(a=1)"));
    SrvRqst services = MakeSrvRqst("service:x");
    services.previous_responders = row.list;
    AttrRqst attributes = MakeAttrRqst("service:x");
    attributes.previous_responders = row.list;
    for (const Body& body :
         {Body(services), Body(attributes), Body(SrvTypeRqst{row.list, std::nullopt, "DEFAULT"})}) {
      EXPECT_EQ(daemon.Ask(body, kGroupMember).has_value(), row.answered) << row.list;
      EXPECT_EQ(daemon.Ask(body, kNeighbour).has_value(), row.answered) << row.list;
    }
  }
}

TEST(RequestHandlerTest, ALoopbackAddressNamesOnlyTheAgentOfTheSendersHost) {
  struct Row {
    const char* list;
    bool answered_on_own_host;
    bool answered_elsewhere;
  };
  const Row rows[] = {
      {"127.0.0.1", false, true},
      {"10.0.0.9, 127.0.0.1 ,10.0.0.8", false, true},
      {"127.0.0.1,10.0.0.1", false, false},
      {"127.0.0.2", true, true},
  };
  const RequestOrigin own_by_group{"10.0.0.1", true, true, Transport::kUdpMulticast, "10.0.0.1"};
  for (const Row& row : rows) {
    DaemonLogic daemon;
    daemon.Register(MakeSrvReg("service:x://1", "service:x"));
    SrvRqst request = MakeSrvRqst("service:x");
    request.previous_responders = row.list;
    EXPECT_EQ(daemon.Ask(request, kOwnHost).has_value(), row.answered_on_own_host) << row.list;
    EXPECT_EQ(daemon.Ask(request, own_by_group).has_value(), row.answered_on_own_host) << row.list;
    EXPECT_EQ(daemon.Ask(request, kGroupMember).has_value(), row.answered_elsewhere) << row.list;
    EXPECT_EQ(daemon.Ask(request, kNeighbour).has_value(), row.answered_elsewhere) << row.list;
  }
}

TEST(RequestHandlerTest, TheReplyHasTheXidAndLanguageOfTheRequest) {
  DaemonLogic daemon;
  Message request = MakeMessage(MakeSrvRqst("service:x"), "de-AT");
  request.header.xid = 0xFFFF;
  Message expected = MakeMessage(SrvRply{}, "de-AT");
  expected.header.xid = 0xFFFF;
  EXPECT_EQ(daemon.Ask(request), expected);
}

TEST(RequestHandlerTest, WhatHasExpiredIsNotAnsweredWith) {
  DaemonLogic daemon;
  SrvReg request = MakeSrvReg("service:x://1", "service:x");
  request.url.lifetime = 10;
  daemon.Register(request);
  daemon.now += Seconds(9);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x")), ReplyOf(SrvRply{Error::kOk, {{1, "service:x://1", {}}}}));
  daemon.now += Seconds(1);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x")), ReplyOf(SrvRply{}));
}

TEST(RequestHandlerTest, EventsTellOfEveryMessage) {
  DaemonLogic daemon;
  daemon.Register(MakeSrvReg("service:x://1", "service:x"));
  daemon.Ask(MakeSrvRqst("service:y"), kGroupMember);
  EXPECT_THAT(daemon.events.Take(), ElementsAre("in 3", "registered service:x://1 en", "out 5", "in 1",
                                                "dropped multicast: nothing to say"));
}

TEST(RequestHandlerTest, NewSettingsHoldFromTheNextRequestOn) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "", "other")),
            ReplyOf(SrvRply{Error::kScopeNotSupported, {}}));
  AgentSettings settings = TestSettings();
  settings.scopes = {"other"};
  daemon.handler.SetSettings(settings);
  EXPECT_EQ(daemon.handler.settings().scopes, settings.scopes);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("service:x", "", "other")), ReplyOf(SrvRply{}));
}

/// Sizes of replies: two hundred services whose URL entries take 6 + 30 bytes each, and a head of 14 + 2 + 4.
class ReplySizeTest : public ::testing::Test {
 protected:
  static constexpr std::size_t kHead = 20;
  static constexpr std::size_t kEntry = 36;
  static constexpr int kServices = 200;

  void SetUp() override {
    for (int i = 0; i < kServices; ++i) {
      std::string url = "service:x://h:1/" + std::to_string(1000 + i);
      url.resize(30, 'u');
      ASSERT_EQ(daemon.Register(MakeSrvReg(url, "service:x", "(id=" + std::to_string(i) + ")")), Error::kOk);
    }
  }

  /// Size, number of URL entries and overflow flag of the reply.
  std::tuple<std::size_t, std::size_t, bool> Ask(const SrvRqst& request, const RequestOrigin& origin) {
    const Result<Bytes> bytes = Encode(MakeMessage(request));
    const std::optional<Bytes> reply = daemon.handler.Handle(*bytes, origin, daemon.now);
    if (!reply) {
      return {0, 0, false};
    }
    const Result<Message> decoded = Decode(*reply);
    EXPECT_TRUE(decoded);
    return {reply->size(), std::get<SrvRply>(decoded->body).urls.size(), decoded->header.overflow};
  }

  DaemonLogic daemon;
};

TEST_F(ReplySizeTest, WhatExceedsTheMtuIsLeftToTcp) {
  EXPECT_EQ(Ask(MakeSrvRqst("service:x"), kNeighbour), std::tuple(kHead, 0U, true));
  EXPECT_EQ(Ask(MakeSrvRqst("service:x"), kOwnHost), std::tuple(kHead, 0U, true));
  EXPECT_EQ(Ask(MakeSrvRqst("service:x"), kGroupMember), std::tuple(kHead, 0U, true));
}

TEST_F(ReplySizeTest, TheMtuIsReachedButNotPassed) {
  AgentSettings settings = TestSettings();
  for (const std::size_t mtu : {kHead + kEntry * 10 - 1, kHead + kEntry * 10, kHead + kEntry * 10 + 1}) {
    settings.mtu = mtu;
    daemon.handler.SetSettings(settings);
    const bool fits = mtu >= kHead + kEntry * 10;
    EXPECT_EQ(Ask(MakeSrvRqst("service:x", "(id<=9)"), kNeighbour),
              fits ? std::tuple(kHead + kEntry * 10, std::size_t{10}, false)
                   : std::tuple(kHead, std::size_t{0}, true));
    EXPECT_EQ(Ask(MakeSrvRqst("service:x"), kNeighbour), std::tuple(kHead, 0U, true));
  }
}

TEST_F(ReplySizeTest, ATrustedNetworkGetsWhatTheOwnOnesGet) {
  RequestOrigin trusted = kStranger;
  trusted.trusted_network = true;
  EXPECT_EQ(Ask(MakeSrvRqst("service:x", "(id<=9)"), trusted), std::tuple(kHead + 10 * kEntry, 10U, false));
  EXPECT_EQ(Ask(MakeSrvRqst("service:x"), trusted), std::tuple(kHead, 0U, true));
  EXPECT_EQ(Ask(MakeSrvRqst("service:x", "(id<=9)"), kStranger), std::tuple(kHead, 0U, true));
}

TEST_F(ReplySizeTest, BeyondItsRateAnotherHostIsLeftToTcpForTheRestOfTheSecond) {
  AgentSettings settings = TestSettings();
  settings.reply_rate = 3;
  daemon.handler.SetSettings(settings);
  const SrvRqst request = MakeSrvRqst("service:x", "(id=7)");
  const auto whole = std::tuple(kHead + kEntry, std::size_t{1}, false);
  const auto bare = std::tuple(kHead, std::size_t{0}, true);
  RequestOrigin stream = kNeighbour;
  stream.transport = Transport::kTcp;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Ask(request, i == 1 ? kGroupMember : kNeighbour), whole);
  }
  EXPECT_EQ(Ask(request, kNeighbour), bare);
  int others = 0;
  for (int host = 100; host < 120; ++host) {
    RequestOrigin other = kNeighbour;
    other.address = "10.0.0." + std::to_string(host);
    others += Ask(request, other) == whole ? 1 : 0;
  }
  EXPECT_GT(others, 10);  // One or two may share the neighbour's place, by this process's key.
  EXPECT_EQ(Ask(request, stream), whole);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(Ask(request, kOwnHost), whole);
  }
  daemon.now += Instant(999);
  EXPECT_EQ(Ask(request, kNeighbour), bare);
  daemon.now += Instant(1);
  EXPECT_EQ(Ask(request, kNeighbour), whole);
}

TEST_F(ReplySizeTest, AStreamCarriesEverything) {
  EXPECT_EQ(Ask(MakeSrvRqst("service:x"), kStreamPeer),
            std::tuple(kHead + kServices * kEntry, std::size_t{kServices}, false));
}

TEST_F(ReplySizeTest, AStrangerNeverGetsMoreThanItSent) {
  const SrvRqst request = MakeSrvRqst("service:x");
  const std::size_t size = Encode(MakeMessage(request))->size();
  EXPECT_LT(size, kHead + kEntry);
  EXPECT_EQ(Ask(request, kStranger), std::tuple(kHead, 0U, true));
  EXPECT_EQ(Ask(MakeSrvRqst("service:x", "(id=7)"), kStranger), std::tuple(kHead, 0U, true));
  EXPECT_EQ(Ask(MakeSrvRqst("service:y"), kStranger), std::tuple(kHead, 0U, false));
}

TEST_F(ReplySizeTest, AStrangersAttributeAndTypeRequestsAreHeldSmallToo) {
  Message expected = MakeMessage(AttrRply{});
  expected.header.overflow = true;
  EXPECT_EQ(daemon.Ask(MakeAttrRqst("service:x"), kStranger), expected);
  for (int i = 0; i < 20; ++i) {
    daemon.Register(MakeSrvReg("service:y" + std::to_string(i) + "://h", "service:y" + std::to_string(i)));
  }
  expected.body = SrvTypeRply{};
  EXPECT_EQ(daemon.Ask(SrvTypeRqst{{}, std::nullopt, "DEFAULT"}, kStranger), expected);
}

TEST(RequestHandlerTest, AStrangersRequestTooSmallForAnyReplyGetsNone) {
  DaemonLogic daemon;
  const Bytes request = {2, 1, 0, 0, 14, 0, 0, 0, 0, 0, 1, 2, 0, 0};
  EXPECT_EQ(daemon.Send(request, kStranger), std::nullopt);
  EXPECT_THAT(daemon.events.Take(), ElementsAre("dropped no room for a reply"));
}

TEST(RequestHandlerTest, MoreUrlsThanAReplyCanCountAreCut) {
  DaemonLogic daemon;
  for (int i = 0; i < 0xFFFF + 10; ++i) {
    Registration registration = MakeRegistration("service:x://h/" + std::to_string(i), "service:x");
    ASSERT_EQ(daemon.registry.Register(registration, daemon.now), Error::kOk);
  }
  const std::optional<Message> reply = daemon.Ask(MakeSrvRqst("service:x"), kStreamPeer);
  ASSERT_TRUE(reply);
  EXPECT_EQ(std::get<SrvRply>(reply->body).urls.size(), 0xFFFFU);
  EXPECT_TRUE(reply->header.overflow);
}

}  // namespace
}  // namespace slp
