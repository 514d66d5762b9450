// SLPFindSrvs beside its traffic: parameters, predicates, scopes, language, agents as services.
#include "api_fixture.h"

namespace slp::support {
namespace {

SLPBoolean SLPCALLBACK NoCall(SLPHandle, const char*, unsigned short, SLPError, void*) {
  ADD_FAILURE() << "a refused parameter is reported to no callback";
  return SLP_TRUE;
}

class FindServicesTest : public ApiTest {
 protected:
  FindServicesTest() { AskOnly("127.0.0.1"); }

  /// The request that a search sends.
  template <typename Body>
  Body Sent(const std::string& type, const char* scopes, const char* filter) {
    SlpPeer peer(
        [](const PeerRequest& request) {
          return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvRply{})}};
        },
        AtPort());
    FindServices(type, scopes, filter);
    return std::get<Body>(peer.requests().at(0).message->body);
  }
};

TEST_F(FindServicesTest, BadParametersAreReturnedAndNotReported) {
  int foreign = 0;
  EXPECT_EQ(SLPFindSrvs(nullptr, "service:x", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvs(&foreign, "service:x", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvs(handle_, nullptr, "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvs(handle_, "", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvs(handle_, "service:x", "", "", nullptr, nullptr), SLP_PARAMETER_BAD);
  EXPECT_EQ(SLPFindSrvs(handle_, "(no type)", "", "", NoCall, nullptr), SLP_PARAMETER_BAD);
}

TEST_F(FindServicesTest, ABadPredicateIsAParseErrorWithoutTraffic) {
  SlpPeer peer([](const PeerRequest&) { return std::vector<PeerReply>(); }, AtPort());
  const SearchOutcome expected{SLP_PARSE_ERROR, {"-2 (null) 0", kLastServiceCall}};
  EXPECT_EQ(FindServices("service:x", "", "(a=1"), expected);
  EXPECT_EQ(FindServices("service:x", "", "(&(a=1)(b=2)))"), expected);
  EXPECT_TRUE(peer.requests().empty());
}

TEST_F(FindServicesTest, AnEmptyScopeListStandsForTheConfiguredScopes) {
  EXPECT_EQ(Sent<SrvRqst>("service:x", "", ""), (SrvRqst{"", "service:x", "DEFAULT", "", ""}));
  Set("net.slp.useScopes", "TAMRO,Lab");
  EXPECT_EQ(Sent<SrvRqst>("service:x", nullptr, nullptr), (SrvRqst{"", "service:x", "TAMRO,Lab", "", ""}));
  EXPECT_EQ(Sent<SrvRqst>("service:x", "A,A", "(x=*)"), (SrvRqst{"", "service:x", "A,A", "(x=*)", ""}));
}

TEST_F(FindServicesTest, PredicatesAreSentAsTheyAre) {
  for (const char* filter : {"(x-ip-addresses=*,10.0.0.2,*)", "(x-ip-addresses=*\\2c10.0.0.2)",
                             "(&(x-a=1)(|(b=x*)(!(c=*))))", "(a=)", " ( a <= 3 ) "}) {
    EXPECT_EQ(Sent<SrvRqst>("service:x", "T", filter), (SrvRqst{"", "service:x", "T", filter, ""}));
  }
}

TEST_F(FindServicesTest, TypesWithAnEmptyConcreteTypeAreAskedFor) {
  EXPECT_EQ(Sent<SrvRqst>("service:servicehost.tamro:", "T", ""),
            (SrvRqst{"", "service:servicehost.tamro:", "T", "", ""}));
}

TEST_F(FindServicesTest, AsksInTheLanguageOfTheHandle) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, SrvRply{})}};
      },
      AtPort());
  SLPHandle german = nullptr;
  ASSERT_EQ(SLPOpen("de-AT", SLP_FALSE, &german), SLP_OK);
  SLPAssociateIP(german, "127.0.0.1");
  SLPFindSrvs(
      german, "service:x", "", "",
      [](SLPHandle, const char*, unsigned short, SLPError, void*) { return SLP_TRUE; }, nullptr);
  SLPClose(german);
  EXPECT_EQ(peer.requests().at(0).message->header.language, "de-AT");
}

TEST_F(FindServicesTest, AgentsAdvertiseThemselves) {
  SlpPeer peer(
      [](const PeerRequest& request) {
        const bool directory =
            std::get<SrvRqst>(request.message->body).service_type == "service:directory-agent";
        const Body body =
            directory
                ? Body(DaAdvert{Error::kOk, 1, "service:directory-agent://127.0.0.1", "DEFAULT", "", "", {}})
                : Body(SaAdvert{"service:service-agent://127.0.0.1", "DEFAULT", "", {}});
        return std::vector<PeerReply>{{.bytes = EncodedReplyTo(request, body)}};
      },
      AtPort());
  EXPECT_EQ(FindServices("service:directory-agent"),
            (SearchOutcome{SLP_OK, {"0 service:directory-agent://127.0.0.1 65535", kLastServiceCall}}));
  EXPECT_EQ(FindServices("service:service-agent"),
            (SearchOutcome{SLP_OK, {"0 service:service-agent://127.0.0.1 65535", kLastServiceCall}}));
}

}  // namespace
}  // namespace slp::support
