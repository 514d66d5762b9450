// Searches on a network with directory agents. Those are scripted peers at loopback addresses of their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/api/api_fixture.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

using Transport = PeerRequest::Transport;

const std::string kAgentUrl = "service:printer://by.agent";
const std::string kGroupUrl = "service:printer://by.group";
const SearchOutcome kByAgent{SLP_OK, {"0 " + kAgentUrl + " 60", kLastServiceCall}};
const SearchOutcome kByGroup{SLP_OK, {"0 " + kGroupUrl + " 60", kLastServiceCall}};

bool AsksForDirectoryAgents(const PeerRequest& request) {
  const auto* body = request.message ? std::get_if<SrvRqst>(&request.message->body) : nullptr;
  return body != nullptr && body->service_type == "service:directory-agent";
}

std::vector<PeerReply> Answer(const PeerRequest& request, Body body) {
  return {{.bytes = EncodedReplyTo(request, std::move(body))}};
}

DaAdvert Advertisement(const std::string& address, const std::string& scopes) {
  return {.error = Error::kOk,
          .boot_timestamp = 1,
          .url = "service:directory-agent://" + address,
          .scopes = scopes,
          .attributes = {},
          .spi = {},
          .authentication = {}};
}

/// A directory agent that knows of one service.
SlpPeer::Script DirectoryAgent(const std::string& address, const std::string& scopes = "DEFAULT",
                               const std::string& url = kAgentUrl) {
  return [=](const PeerRequest& request) {
    if (AsksForDirectoryAgents(request)) {
      return Answer(request, Advertisement(address, scopes));
    }
    return request.transport == Transport::kGroup ? std::vector<PeerReply>()
                                                  : Answer(request, UrlReply({url}));
  };
}

/// A service agent that answers the group, and its host's questions for directory agents with these.
SlpPeer::Script ServiceAgent(const std::vector<std::string>& agents = {}) {
  return [=](const PeerRequest& request) {
    if (AsksForDirectoryAgents(request)) {
      return request.transport == Transport::kGroup ? std::vector<PeerReply>()
                                                    : Answer(request, UrlReply(agents));
    }
    return request.transport == Transport::kGroup && PreviousResponders(request).empty()
               ? Answer(request, UrlReply({kGroupUrl}))
               : std::vector<PeerReply>();
  };
}

std::size_t Count(const SlpPeer& peer, Transport transport, bool for_agents) {
  std::size_t count = 0;
  for (const PeerRequest& request : peer.requests()) {
    count += request.transport == transport && AsksForDirectoryAgents(request) == for_agents ? 1 : 0;
  }
  return count;
}

class DirectoryAgentsTest : public ApiTest {
 protected:
  DirectoryAgentsTest() {
    Set("net.slp.interfaces", "127.0.0.2");
    Set("net.slp.activeDADetection", "true");
    Set("net.slp.DADiscoveryTimeouts", "60,60");
    Set("net.slp.datagramTimeouts", "60,60");
  }

  void SetUp() override {
    if (kelsd::support::UnderWine()) {
      GTEST_SKIP() << kelsd::support::kOneLoopbackAddress;
    }
  }

  PeerOptions Alone(const std::string& address) const {
    PeerOptions options = AtPort(address);
    options.group = false;
    return options;
  }
};

TEST_F(DirectoryAgentsTest, AConfiguredAgentStandsForEveryoneAndTellsItsScopesOnce) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(DirectoryAgent("127.0.0.3"), Alone("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(Count(agent, Transport::kUnicast, true), 1U);
  EXPECT_EQ(Count(agent, Transport::kUnicast, false), 2U);
  EXPECT_THAT(group.requests(), IsEmpty());
}

TEST_F(DirectoryAgentsTest, TheRequestIsWhatAServiceAgentWouldGet) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(DirectoryAgent("127.0.0.3", "tamro,default"), Alone("127.0.0.3"));
  EXPECT_EQ(FindServices("service:printer", "TAMRO", "(a=1)"), kByAgent);
  Message expected{Header{}, SrvRqst{"", "service:printer", "TAMRO", "(a=1)", ""}};
  expected.header.xid = agent.requests().back().message->header.xid;
  EXPECT_EQ(agent.requests().back().message.value(), expected);
}

TEST_F(DirectoryAgentsTest, OneThatServesOtherScopesIsNotAsked) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(DirectoryAgent("127.0.0.3", "TAMRO"), Alone("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_EQ(FindServices("service:printer", "DEFAULT,TAMRO"), kByGroup);
  EXPECT_EQ(Count(agent, Transport::kUnicast, false), 0U);
}

TEST_F(DirectoryAgentsTest, TwoThatServeTheScopesTogetherAreBothAsked) {
  Set("net.slp.DAAddresses", "127.0.0.3,127.0.0.4,127.0.0.5");
  SlpPeer one(DirectoryAgent("127.0.0.3", "TAMRO", "service:a://1"), Alone("127.0.0.3"));
  SlpPeer two(DirectoryAgent("127.0.0.4", "DEFAULT,other", "service:a://2"), Alone("127.0.0.4"));
  SlpPeer three(DirectoryAgent("127.0.0.5", "other", "service:a://3"), Alone("127.0.0.5"));
  const SearchOutcome expected{SLP_OK, {"0 service:a://1 60", "0 service:a://2 60", kLastServiceCall}};
  EXPECT_EQ(FindServices("service:a", "DEFAULT,TAMRO"), expected);
}

TEST_F(DirectoryAgentsTest, OneThatIsSilentIsReplacedAndNotAskedAgain) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  std::atomic<bool> silent = false;
  SlpPeer agent(
      [&](const PeerRequest& request) {
        return silent ? std::vector<PeerReply>() : DirectoryAgent("127.0.0.3")(request);
      },
      Alone("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  silent = true;
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  const std::size_t before = agent.requests().size();
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_EQ(agent.requests().size(), before);
}

TEST_F(DirectoryAgentsTest, AnotherOneTakesThePlaceOfTheOneThatIsGone) {
  Set("net.slp.DAAddresses", "127.0.0.3,127.0.0.4");
  auto first =
      std::make_unique<SlpPeer>(DirectoryAgent("127.0.0.3", "DEFAULT", "service:a://1"), Alone("127.0.0.3"));
  SlpPeer second(DirectoryAgent("127.0.0.4", "DEFAULT", "service:a://2"), Alone("127.0.0.4"));
  EXPECT_EQ(FindServices("service:a"), (SearchOutcome{SLP_OK, {"0 service:a://1 60", kLastServiceCall}}));
  first.reset();
  EXPECT_EQ(FindServices("service:a"), (SearchOutcome{SLP_OK, {"0 service:a://2 60", kLastServiceCall}}));
}

TEST_F(DirectoryAgentsTest, TheErrorOfAnAgentIsTheSearchs) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(
      [](const PeerRequest& request) {
        return AsksForDirectoryAgents(request) ? Answer(request, Advertisement("127.0.0.3", "DEFAULT"))
                                               : Answer(request, SrvRply{Error::kLanguageNotSupported, {}});
      },
      Alone("127.0.0.3"));
  EXPECT_EQ(FindServices("service:a", "", "(a=1)"),
            (SearchOutcome{SLP_LANGUAGE_NOT_SUPPORTED, {"-1 (null) 0", kLastServiceCall}}));
}

TEST_F(DirectoryAgentsTest, TheDaemonOfTheHostTellsWhichThereAre) {
  SlpPeer agent(DirectoryAgent("127.0.0.3"), Alone("127.0.0.3"));
  SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3"}), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer", "DEFAULT,TAMRO"), kByAgent);
  const std::vector<PeerRequest> requests = daemon.requests();
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(std::get<SrvRqst>(requests[0].message->body).scopes, "DEFAULT");
  EXPECT_EQ(std::get<SrvRqst>(requests[1].message->body).scopes, "TAMRO");
  EXPECT_EQ(Count(agent, Transport::kUnicast, true), 0U);
}

TEST_F(DirectoryAgentsTest, ADaemonThatKnowsOfNoneCostsNoTimeAndLeavesTheSearchToItself) {
  SlpPeer daemon(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_THAT(Milliseconds([&] { EXPECT_EQ(FindServices("service:printer"), kByGroup); }),
              AllOf(Ge(180), Le(900)));
  EXPECT_EQ(Count(daemon, Transport::kUnicast, true), 1U);
  EXPECT_EQ(Count(daemon, Transport::kGroup, true), 0U);
}

TEST_F(DirectoryAgentsTest, ADaemonThatIsADirectoryAgentAnswersItself) {
  SlpPeer daemon(DirectoryAgent("127.0.0.2"), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(Count(daemon, Transport::kGroup, false), 0U);
}

TEST_F(DirectoryAgentsTest, WithoutADaemonTheFirstSearchLooksForThemByTheWay) {
  SlpPeer agent(DirectoryAgent("127.0.0.3"), AtPort("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  const SearchOutcome both{SLP_OK, {"0 " + kGroupUrl + " 60", "0 " + kAgentUrl + " 60", kLastServiceCall}};
  EXPECT_EQ(FindServices("service:printer"), both);
  const std::size_t asked = Count(group, Transport::kGroup, false);
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(Count(group, Transport::kGroup, false), asked);
}

TEST_F(DirectoryAgentsTest, WithoutADaemonAndWithoutAgentsNoSearchIsLonger) {
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  EXPECT_THAT(Milliseconds([&] { EXPECT_EQ(FindServices("service:printer"), kByGroup); }),
              AllOf(Ge(180), Le(900)));
  const std::size_t searched = Count(group, Transport::kGroup, true);
  EXPECT_GE(searched, 1U);
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_EQ(Count(group, Transport::kGroup, true), searched);
}

TEST_F(DirectoryAgentsTest, AnAgentThatSpeaksForAnotherIsNotBelieved) {
  SlpPeer liar(DirectoryAgent("127.0.0.9"), AtPort("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
}

TEST_F(DirectoryAgentsTest, NoneIsLookedForWithoutTheProperties) {
  Set("net.slp.activeDADetection", "false");
  SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3"}), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_EQ(Count(daemon, Transport::kUnicast, true), 0U);
}

TEST_F(DirectoryAgentsTest, AnAgentThatTheHandleNamesIsTheOnlyOne) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(DirectoryAgent("127.0.0.3"), Alone("127.0.0.3"));
  SlpPeer named(DirectoryAgent("127.0.0.5", "DEFAULT", kGroupUrl), Alone("127.0.0.5"));
  AskOnly("127.0.0.5");
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  EXPECT_THAT(agent.requests(), IsEmpty());
}

TEST_F(DirectoryAgentsTest, AgentsThemselvesAreSearchedWithTheGroup) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(DirectoryAgent("127.0.0.3"), AtPort("127.0.0.3"));
  EXPECT_EQ(FindServices("service:directory-agent"),
            (SearchOutcome{SLP_OK, {"0 service:directory-agent://127.0.0.3 65535", kLastServiceCall}}));
  EXPECT_EQ(Count(agent, Transport::kUnicast, true), 0U);
}

TEST_F(DirectoryAgentsTest, TheDaemonsListIsAnAnswerToo) {
  SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3"}), AtPort("127.0.0.2"));
  AskOnly("127.0.0.2");
  EXPECT_EQ(FindServices("service:directory-agent"),
            (SearchOutcome{SLP_OK, {"0 service:directory-agent://127.0.0.3 60", kLastServiceCall}}));
}

TEST_F(DirectoryAgentsTest, AttributesAndTypesGoByThemToo) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(
      [](const PeerRequest& request) {
        if (AsksForDirectoryAgents(request)) {
          return Answer(request, Advertisement("127.0.0.3", "DEFAULT"));
        }
        return request.message->function() == FunctionId::kAttrRqst
                   ? Answer(request, AttrRply{Error::kOk, "(a=1)", {}})
                   : Answer(request, SrvTypeRply{Error::kOk, "service:printer"});
      },
      Alone("127.0.0.3"));
  EXPECT_EQ(FindAttributes("service:printer"), (SearchOutcome{SLP_OK, {"0 (a=1)", kLastCall}}));
  EXPECT_EQ(FindTypes("*"), (SearchOutcome{SLP_OK, {"0 service:printer", kLastCall}}));
}

}  // namespace
}  // namespace slp::support
