// Requests for the agents themselves.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"
#include "agent/wire/printing.h"

namespace slp {
namespace {

constexpr const char* kServiceAgent = "service:service-agent";
constexpr const char* kDirectoryAgent = "service:directory-agent";

std::optional<Message> Advert(std::string url, std::string attributes) {
  return ReplyOf(SaAdvert{std::move(url), "DEFAULT,TAMRO", std::move(attributes), {}});
}

TEST(ServiceAgentRequestTest, TheAdvertisementNamesScopesAndTypes) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kServiceAgent), kGroupMember),
            Advert("service:service-agent://10.0.0.1", ""));
  daemon.Register(MakeSrvReg("service:x://1", "service:x"));
  daemon.Register(MakeSrvReg("http://1", "http", "", "tamro"));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst("SERVICE:service-AGENT"), kGroupMember),
            Advert("service:service-agent://10.0.0.1", "(service-type=http,service:x)"));
}

TEST(ServiceAgentRequestTest, TheAddressIsTheOneThatTheSenderReaches) {
  DaemonLogic daemon;
  RequestOrigin origin = kGroupMember;
  origin.local_address = "172.16.0.1";
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kServiceAgent), origin), Advert("service:service-agent://172.16.0.1", ""));
  origin.local_address = "";
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kServiceAgent), origin), Advert("service:service-agent://10.0.0.1", ""));
}

struct AgentCase {
  const char* predicate;
  const char* scopes;
  bool answered;
  Error unicast_error;
};

TEST(ServiceAgentRequestTest, ScopesMayBeLeftOutAndThePredicateMustHold) {
  const AgentCase cases[] = {
      {"", "", true, Error::kOk},
      {"", "TAMRO,other", true, Error::kOk},
      {"", "other", false, Error::kScopeNotSupported},
      {"(service-type=service:x)", "", true, Error::kOk},
      {"(service-type=SERVICE:X)", "", true, Error::kOk},
      {"(service-type=*x)", "", true, Error::kOk},
      {"(service-type=service:y)", "", false, Error::kOk},
      {"(|(service-type=service:y)(service-type=service:x))", "", true, Error::kOk},
      {"(room=7)", "DEFAULT", true, Error::kOk},
      {"(room=8)", "DEFAULT", false, Error::kOk},
      {"(room=8", "DEFAULT", false, Error::kParseError},
  };
  for (const AgentCase& row : cases) {
    DaemonLogic daemon;
    AgentSettings settings = TestSettings();
    settings.service_agent_attributes = "(room=7)";
    daemon.handler.SetSettings(settings);
    daemon.Register(MakeSrvReg("service:x://1", "service:x"));
    const SrvRqst request = MakeSrvRqst(kServiceAgent, row.predicate, row.scopes);
    const auto advert = Advert("service:service-agent://10.0.0.1", "(room=7),(service-type=service:x)");
    EXPECT_EQ(daemon.Ask(request, kGroupMember), row.answered ? advert : std::nullopt) << row.predicate;
    EXPECT_EQ(daemon.Ask(request, kNeighbour),
              row.answered ? advert : ReplyOf(SrvRply{row.unicast_error, {}}))
        << row.predicate;
  }
}

TEST(ServiceAgentRequestTest, WhatDoesNotFitIsLeftOutOrNotSent) {
  DaemonLogic daemon;
  for (int i = 0; i < 200; ++i) {
    const std::string type = "service:type" + std::to_string(i);
    daemon.Register(MakeSrvReg(type + "://1", type));
  }
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kServiceAgent), kGroupMember),
            Advert("service:service-agent://10.0.0.1", ""));
  EXPECT_NE(daemon.Ask(MakeSrvRqst(kServiceAgent), kStreamPeer),
            Advert("service:service-agent://10.0.0.1", ""));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kServiceAgent), kStranger), std::nullopt);
}

TEST(ServiceAgentRequestTest, ASignatureCannotBeGiven) {
  DaemonLogic daemon;
  SrvRqst request = MakeSrvRqst(kServiceAgent);
  request.spi = "key";
  EXPECT_EQ(daemon.Ask(request), ReplyOf(SrvRply{Error::kAuthenticationUnknown, {}}));
  EXPECT_EQ(daemon.Ask(request, kGroupMember), std::nullopt);
}

TEST(DirectoryAgentRequestTest, AServiceAgentKnowsOfNone) {
  DaemonLogic daemon;
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent), kGroupMember), std::nullopt);
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent, "", "")), ReplyOf(SrvRply{}));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent, "", ""), kOwnHost), ReplyOf(SrvRply{}));
}

TEST(DirectoryAgentRequestTest, AServiceAgentTellsItsHostOfThoseThatItHasFound) {
  DaemonLogic daemon;
  std::vector<std::string> asked_for;
  daemon.handler.SetKnownAgents([&](const std::vector<std::string>& scopes) {
    asked_for = scopes;
    return std::vector<std::string>{"service:directory-agent://10.0.0.5"};
  });
  const auto known = ReplyOf(SrvRply{Error::kOk, {{65535, "service:directory-agent://10.0.0.5", {}}}});
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent, "", "TAMRO,x"), kOwnHost), known);
  EXPECT_THAT(asked_for, testing::ElementsAre("TAMRO", "x"));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent)), ReplyOf(SrvRply{}));
  EXPECT_EQ(daemon.Ask(MakeSrvRqst(kDirectoryAgent), kGroupMember), std::nullopt);
}

}  // namespace
}  // namespace slp
