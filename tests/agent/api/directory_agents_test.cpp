// Searches on a network with directory agents. Those are scripted peers at loopback addresses of their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/api/api_fixture.h"
#include "api/handle_call.h"
#include "api/request_message.h"
#include "api/search.h"
#include "support/under_wine/under_wine.h"
#include "wire/codec.h"

namespace slp::support {
namespace {

using testing::IsEmpty;

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

DaAdvert Advertisement(const std::string& address, const std::string& scopes,
                       const std::string& attributes = "") {
  return {.error = Error::kOk,
          .boot_timestamp = 1,
          .url = "service:directory-agent://" + address,
          .scopes = scopes,
          .attributes = attributes,
          .spi = {},
          .authentication = {}};
}

/// A directory agent that advertises attributes.
SlpPeer::Script WithAttributes(const std::string& address, const std::string& attributes,
                               const std::string& scopes = "DEFAULT") {
  return [=](const PeerRequest& request) {
    return AsksForDirectoryAgents(request) ? Answer(request, Advertisement(address, scopes, attributes))
                                           : std::vector<PeerReply>();
  };
}

SlpPeer::Script Silent() {
  return [](const PeerRequest&) { return std::vector<PeerReply>(); };
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
    Set("net.slp.DADiscoveryTimeouts", "1000,1000");
    Set("net.slp.datagramTimeouts", "1000,1000");
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
  Set("net.slp.datagramTimeouts", "60,60");
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
  const std::size_t before = RequestsTo(agent, 4).size();
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

TEST_F(DirectoryAgentsTest, OnceTheScopesAreServedNoOtherConfiguredOneIsAsked) {
  Set("net.slp.DAAddresses", "127.0.0.3,127.0.0.4,no-such-host.invalid");
  SlpPeer agent(DirectoryAgent("127.0.0.3"), Alone("127.0.0.3"));
  SlpPeer other(DirectoryAgent("127.0.0.4"), Alone("127.0.0.4"));
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_THAT(other.requests(), IsEmpty());
}

TEST_F(DirectoryAgentsTest, ThoseThatAreSilentShareTheTimeAndLeaveSomeToTheOthers) {
  Set("net.slp.DAAddresses", "127.0.0.3,127.0.0.4,127.0.0.5,127.0.0.6");
  Set("net.slp.DADiscoveryTimeouts", "900,900");
  Set("net.slp.unicastMaximumWait", "2000");
  const std::vector<SearchOutcome> outcomes = WhereTheMachineGoesOn([this] {
    SlpPeer one(Silent(), Alone("127.0.0.3"));
    SlpPeer two(Silent(), Alone("127.0.0.4"));
    SlpPeer three(Silent(), Alone("127.0.0.5"));
    SlpPeer agent(DirectoryAgent("127.0.0.6"), Alone("127.0.0.6"));
    std::vector<SearchOutcome> found;
    ExpectTakes(1500, 3000, [&] { found.push_back(FindServices("service:printer")); });
    found.push_back(FindServices("service:printer"));
    EXPECT_EQ(RequestsTo(one, 1).size(), 1U);
    return found;
  });
  EXPECT_EQ(outcomes, (std::vector<SearchOutcome>{kByAgent, kByAgent}));
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

// A search takes 500 ms. Another one, for directory agents, would take as long.
TEST_F(DirectoryAgentsTest, ADaemonThatKnowsOfNoneCostsNoTimeAndLeavesTheSearchToItself) {
  SlpPeer daemon(ServiceAgent(), AtPort("127.0.0.2"));
  ExpectTakes(500, 900, [&] { EXPECT_EQ(FindServices("service:printer"), kByGroup); });
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
  RequestsTo(group, 6);
  const std::size_t asked = Count(group, Transport::kGroup, false);
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_EQ(Count(group, Transport::kGroup, false), asked);
}

TEST_F(DirectoryAgentsTest, WithoutADaemonAndWithoutAgentsNoSearchIsLonger) {
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  ExpectTakes(500, 900, [&] { EXPECT_EQ(FindServices("service:printer"), kByGroup); });
  RequestsTo(group, 6);
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

TEST_F(DirectoryAgentsTest, OneThatIsConfiguredByNameIsAsLikeAnyOther) {
  Set("net.slp.DAAddresses", "no-such-host.invalid,localhost");
  SlpPeer agent(DirectoryAgent("127.0.0.1"), Alone("127.0.0.1"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByAgent);
  EXPECT_THAT(group.requests(), IsEmpty());
}

TEST_F(DirectoryAgentsTest, ANameThatIsNotFoundIsNoAgent) {
  Set("net.slp.DAAddresses", "no-such-host.invalid");
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.2"));
  EXPECT_EQ(FindServices("service:printer"), kByGroup);
}

TEST_F(DirectoryAgentsTest, TheRefreshIntervalIsTheLongestOfThoseOfTheScopes) {
  Set("net.slp.DAAddresses", "127.0.0.3,127.0.0.4,127.0.0.5,127.0.0.6,127.0.0.7");
  SlpPeer one(WithAttributes("127.0.0.3", "(min-refresh-interval=600)"), Alone("127.0.0.3"));
  SlpPeer two(WithAttributes("127.0.0.4", "(room=7),(min-refresh-interval=900)"), Alone("127.0.0.4"));
  SlpPeer none(WithAttributes("127.0.0.5", "(room=7)"), Alone("127.0.0.5"));
  SlpPeer other(WithAttributes("127.0.0.6", "(min-refresh-interval=2000)", "TAMRO"), Alone("127.0.0.6"));
  EXPECT_EQ(SLPGetRefreshInterval(), 900);
  EXPECT_EQ(SLPGetRefreshInterval(), 900);
  EXPECT_EQ(two.requests().size(), 1U) << "each is asked once";
  Set("net.slp.useScopes", "TAMRO");
  EXPECT_EQ(SLPGetRefreshInterval(), 2000);
}

TEST_F(DirectoryAgentsTest, ARefreshIntervalBeyondTheLongestLifetimeIsThat) {
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer agent(WithAttributes("127.0.0.3", "(min-refresh-interval=100000)"), Alone("127.0.0.3"));
  EXPECT_EQ(SLPGetRefreshInterval(), 65535);
}

TEST_F(DirectoryAgentsTest, TheRefreshIntervalOfThoseThatTheDaemonKnowsIsAskedForOnce) {
  SlpPeer agent(WithAttributes("127.0.0.3", "(min-refresh-interval=600)"), Alone("127.0.0.3"));
  SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3"}), AtPort("127.0.0.2"));
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
  EXPECT_EQ(agent.requests().size(), 1U);
  EXPECT_EQ(Count(daemon, Transport::kGroup, true), 0U);
}

TEST_F(DirectoryAgentsTest, ASilentAgentCostsTheRefreshIntervalTimeOnce) {
  Set("net.slp.DADiscoveryTimeouts", "60,60");
  SlpPeer agent(Silent(), Alone("127.0.0.3"));
  SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3"}), AtPort("127.0.0.2"));
  EXPECT_EQ(SLPGetRefreshInterval(), 0);
  const std::size_t asked = RequestsTo(agent, 2).size();
  EXPECT_GE(asked, 1U);
  EXPECT_EQ(SLPGetRefreshInterval(), 0);
  EXPECT_EQ(agent.requests().size(), asked);
}

TEST_F(DirectoryAgentsTest, TheRefreshIntervalIsFoundInTheTimeOfOneQuestion) {
  Set("net.slp.DADiscoveryTimeouts", "900,900");
  Set("net.slp.unicastMaximumWait", "1200");
  const unsigned short interval = WhereTheMachineGoesOn([this] {
    SlpPeer one(Silent(), Alone("127.0.0.3"));
    SlpPeer two(Silent(), Alone("127.0.0.4"));
    SlpPeer agent(WithAttributes("127.0.0.5", "(min-refresh-interval=600)"), Alone("127.0.0.5"));
    SlpPeer daemon(ServiceAgent({"service:directory-agent://127.0.0.3", "service:directory-agent://127.0.0.4",
                                 "service:directory-agent://127.0.0.5"}),
                   AtPort("127.0.0.2"));
    unsigned short found = 0;
    ExpectTakes(800, 2400, [&] { found = SLPGetRefreshInterval(); });
    return found;
  });
  EXPECT_EQ(interval, 600);
}

TEST_F(DirectoryAgentsTest, TheSearchForThemThatGoesAlongIsToldApartFromTheSearch) {
  constexpr std::uint16_t kXid = 7;
  // More often than there are questions before.
  constexpr int kEqualDraws = 20;
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  client::RequestContext context =
      client::MakeContext({.language = "en", .peer = std::nullopt, .interfaces = {}});
  int draws = 0;
  context.environment.new_xid = [&] {
    ++draws;
    return static_cast<std::uint16_t>(draws <= kEqualDraws ? kXid : kXid + draws);
  };
  std::size_t replies = 0;
  const client::ReplySink count = [&](const Message&) {
    ++replies;
    return true;
  };
  const Message search = client::NewRequest(context, SrvRqst{"", "service:printer", "DEFAULT", "", ""});
  EXPECT_EQ(client::RunSearch(search, context, count), SLP_OK);
  EXPECT_EQ(replies, 1U);
  EXPECT_GT(Count(group, Transport::kGroup, true), 0U);
}

TEST_F(DirectoryAgentsTest, WithoutADaemonTheRefreshIntervalIsSearchedForAndKept) {
  SlpPeer agent(WithAttributes("127.0.0.3", "(min-refresh-interval=600)"), AtPort("127.0.0.3"));
  SlpPeer liar(WithAttributes("127.0.0.9", "(min-refresh-interval=700)"), AtPort("127.0.0.4"));
  SlpPeer slandered(WithAttributes("127.0.0.9", "(min-refresh-interval=800)"), Alone("127.0.0.9"));
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
  EXPECT_EQ(Count(agent, Transport::kUnicast, true), 0U) << "the advertisement has told it";
  EXPECT_THAT(slandered.requests(), IsEmpty());
  const std::size_t asked = RequestsTo(agent, 3).size();
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
  EXPECT_EQ(agent.requests().size(), asked);
}

TEST_F(DirectoryAgentsTest, TheSearchForTheRefreshIntervalServesSearchesInOtherScopes) {
  SlpPeer agent(DirectoryAgent("127.0.0.3", "TAMRO"), AtPort("127.0.0.3"));
  SlpPeer group(ServiceAgent(), AtPort("127.0.0.4"));
  EXPECT_EQ(SLPGetRefreshInterval(), 0);
  EXPECT_EQ(FindServices("service:printer", "TAMRO"), kByAgent);
  EXPECT_EQ(Count(group, Transport::kGroup, false), 0U);
}

TEST_F(DirectoryAgentsTest, TheRefreshIntervalOfAConfiguredAgentCountsBesideThoseThatAreFound) {
  Set("net.slp.useScopes", "DEFAULT,TAMRO");
  Set("net.slp.DAAddresses", "127.0.0.3");
  SlpPeer configured(WithAttributes("127.0.0.3", "(min-refresh-interval=600)"), Alone("127.0.0.3"));
  SlpPeer found(WithAttributes("127.0.0.4", "(min-refresh-interval=500)", "TAMRO"), AtPort("127.0.0.4"));
  EXPECT_EQ(SLPGetRefreshInterval(), 600);
}

TEST_F(DirectoryAgentsTest, NoAgentNoRefreshInterval) {
  EXPECT_EQ(SLPGetRefreshInterval(), 0);
}

}  // namespace
}  // namespace slp::support
