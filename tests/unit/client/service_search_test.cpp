#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "client/client_impl.h"
#include "support/allocation_failure.h"
#include "support/core_fixture.h"
#include "unit/client/search_codes.h"

namespace kelsd {
namespace {

using scripted_slp::Code;
using scripted_slp::Delivers;
using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using scripted_slp::Service;
using scripted_slp::Throws;
using testing::ElementsAre;
using testing::IsEmpty;

using Results = std::vector<SKelServiceSearchResult>;

const std::string kType = "service:zdrest.tamro:http";

/// All members of each result.
std::vector<
    std::tuple<std::string, unsigned short, std::string, std::string, unsigned int, std::string, std::string>>
Members(const Results& results) {
  decltype(Members(results)) members;
  for (const SKelServiceSearchResult& result : results) {
    members.emplace_back(result.URL, result.Lifetime, result.TypeString, result.Host, result.Port,
                         result.NetFamily, result.ServicePart);
  }
  return members;
}

class ServiceSearch : public CoreFixture {
 protected:
  /// A search that is expected to leave its output alone.
  static SResult FailingSearch(const std::vector<std::string>& scopes = {}, const std::string& address = "") {
    const Results before = {SKelServiceSearchResult("service:before://h", 5)};
    Results results = before;
    const SResult result = CKelSLPClientImpl::FindServices(results, kType, scopes, "", address);
    EXPECT_EQ(Members(results), Members(before));
    return result;
  }
};

SResult Failure(SResult::EError error, const std::string& debug, const std::string& detail = "") {
  return {error, detail, "kelsd::CKelSLPClientImpl::FindServices " + debug};
}

TEST_F(ServiceSearch, NeedsInitialisation) {
  EXPECT_THAT(FailingSearch(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(ServiceSearch, FailsAfterAFailedReInitialisationUntilInitialisedAgain) {
  InitializeCore();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  ASSERT_FALSE(CKelSLPImpl::ReInitialize(false).IsOk());
  EXPECT_THAT(FailingSearch(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
  ASSERT_TRUE(CKelSLPImpl::Initialize().IsOk());
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, kType, {}, "", ""), SameResult(kSuccess));
}

TEST_F(ServiceSearch, ReturnsServicesSortedAndSplit) {
  InitializeCore();
  Next(Function::kFindSrvs, Delivers({Service("service:zdrest.tamro:http://10.0.0.7", 60),
                                      Service("service:zdrest.tamro:http://10.0.0.5:8080/api", 65535)}));
  Results results = {SKelServiceSearchResult("service:before://h", 5)};
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, kType, {"tamro"}, "(x-version=1)", ""),
              SameResult(kSuccess));
  EXPECT_EQ(
      Members(results),
      Members({{"service:zdrest.tamro:http://10.0.0.5:8080/api", 65535, kType, "10.0.0.5", 8080, "", "/api"},
               {"service:zdrest.tamro:http://10.0.0.7", 60, kType, "10.0.0.7", 0, "", ""}}));
  EXPECT_THAT(scripted_slp::Calls(),
              ElementsAre("SLPOpen(en,0)=#3", "SLPFindSrvs(#3,service:zdrest.tamro:http,TAMRO,(x-version=1))",
                          "SLPParseSrvURL(service:zdrest.tamro:http://10.0.0.7)",
                          "SLPParseSrvURL(service:zdrest.tamro:http://10.0.0.5:8080/api)", "SLPClose(#3)"));
  EXPECT_THAT(scripted_slp::CallbackAnswers(), ElementsAre(SLP_TRUE, SLP_TRUE, SLP_FALSE));
}

TEST_F(ServiceSearch, SucceedsWhenNobodyAnswers) {
  InitializeCore();
  Results results = {SKelServiceSearchResult("service:before://h", 5)};
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, kType, {}, "", ""), SameResult(kSuccess));
  EXPECT_THAT(results, IsEmpty());
  EXPECT_THAT(scripted_slp::CallbackAnswers(), ElementsAre(SLP_FALSE));
}

TEST_F(ServiceSearch, KeepsTheFirstOfSeveralRepliesWithOneUrl) {
  InitializeCore();
  Next(Function::kFindSrvs, Delivers({Service("service:x://h", 10), Service("service:x://a", 5),
                                      Service("service:x://h", 20), Service("SERVICE:x://h", 30)}));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", {}, "", ""), SameResult(kSuccess));
  EXPECT_EQ(Members(results), Members({{"SERVICE:x://h", 30, "SERVICE:x", "h"},
                                       {"service:x://a", 5, "service:x", "a"},
                                       {"service:x://h", 10, "service:x", "h"}}));
}

// The time that a search takes for each service doesn't grow with their number: comparing each URL with all
// others takes minutes for these.
TEST_F(ServiceSearch, CopesWithManyServices) {
  constexpr int kServices = 100'000;
  InitializeCore();
  std::vector<scripted_slp::Delivery> replies;
  for (int number = 0; number < 2 * kServices; ++number) {
    replies.push_back(Service("service:x://h" + std::to_string(number % kServices), 1));
  }
  Next(Function::kFindSrvs, Delivers(replies));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", {}, "", ""), SameResult(kSuccess));
  EXPECT_EQ(results.size(), kServices);
}

TEST_F(ServiceSearch, KeepsServicesWhoseUrlCannotBeSplit) {
  InitializeCore();
  Next(Function::kFindSrvs,
       Delivers({Service("not a url", 10), Service("service:x://", 20), Service("service:x://h", 30)}));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", {}, "", ""), SameResult(kSuccess));
  EXPECT_EQ(Members(results),
            Members({{"not a url", 10}, {"service:x://", 20}, {"service:x://h", 30, "service:x", "h"}}));
}

TEST_F(ServiceSearch, TakesAMissingUrlForAnEmptyOne) {
  InitializeCore();
  Next(Function::kFindSrvs, Delivers({Code(SLP_OK)}));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", {}, "", ""), SameResult(kSuccess));
  EXPECT_EQ(Members(results), Members({{"", 0}}));
}

TEST_F(ServiceSearch, CleansTheScopes) {
  struct Row {
    std::vector<std::string> scopes;
    std::string list;
  };
  const std::vector<Row> rows = {
      {{}, ""},
      {{" ", ""}, ""},
      {{" tamro ", "", "Tamro"}, "TAMRO,TAMRO"},
      {{"TAMRO", "TAMRO"}, "TAMRO"},
      {{"tamro", "lab"}, "LAB,TAMRO"},
  };
  InitializeCore();
  for (const Row& row : rows) {
    scripted_slp::ForgetCalls();
    Results results;
    EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", row.scopes, "", ""),
                SameResult(kSuccess));
    const std::vector<std::string> calls = scripted_slp::Calls("SLPFindSrvs");
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_TRUE(calls[0].ends_with(",service:x," + row.list + ",)")) << calls[0];
  }
}

TEST_F(ServiceSearch, PassesTypeAndFilterOnAsTheyAre) {
  InitializeCore();
  Next(Function::kFindSrvs, Returns(SLP_PARSE_ERROR));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, " Any:TYPE ", {}, "(&(a=1", ""),
              SameResult(Failure(SResult::ERR_PARSE_ERROR, "SLPFindSrvs")));
  EXPECT_THAT(scripted_slp::Calls("SLPFindSrvs"), ElementsAre("SLPFindSrvs(#3, Any:TYPE ,,(&(a=1)"));
}

TEST_F(ServiceSearch, AsksOneAddressOnly) {
  InitializeCore();
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, "service:x", {}, "", "10.0.0.5"),
              SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,0)=#3", "SLPAssociateIP(#3,10.0.0.5)",
                                                 "SLPFindSrvs(#3,service:x,,)", "SLPClose(#3)"));
}

TEST_F(ServiceSearch, RefusesBadScopesBeforeItOpensAHandle) {
  InitializeCore();
  EXPECT_THAT(FailingSearch({"tamro", " a;b "}),
              SameResult(Failure(SResult::ERR_SCOPE_BAD_CHARACTERS,
                                 "kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope",
                                 "scope = A;B")));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(ServiceSearch, TellsThatNoHandleOpens) {
  InitializeCore();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(FailingSearch(), SameResult(Failure(SResult::ERR_BASIC_NETWORK_INIT_FAILED,
                                                  "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  Next(Function::kOpen, scripted_slp::HandsOutNothing());
  EXPECT_THAT(FailingSearch(), SameResult(Failure(SResult::ERR_UNKNOWN,
                                                  "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen handle NULL")));
}

TEST_F(ServiceSearch, TellsThatTheAddressIsRefused) {
  InitializeCore();
  Next(Function::kAssociateIP, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(FailingSearch({}, "nowhere"),
              SameResult(Failure(SResult::ERR_INVALID_PARAMETER,
                                 "kelsd::CKelSLPImpl::SLPHandleAssociateIP SLPAssociateIP")));
  EXPECT_THAT(scripted_slp::Calls(),
              ElementsAre("SLPOpen(en,0)=#3", "SLPAssociateIP(#3,nowhere)", "SLPClose(#3)"));
}

TEST_F(ServiceSearch, TranslatesWhatTheCallReturns) {
  InitializeCore();
  for (const SearchCode& row : FailingSearchCodes()) {
    Next(Function::kFindSrvs, Returns(row.slp));
    EXPECT_THAT(FailingSearch(), SameResult(Failure(row.error, "SLPFindSrvs")));
  }
}

TEST_F(ServiceSearch, TranslatesWhatTheCallbackIsTold) {
  InitializeCore();
  for (const SearchCode& row : FailingSearchCodes()) {
    Next(Function::kFindSrvs, Delivers({Service("service:x://h", 1), Code(row.slp)}));
    EXPECT_THAT(FailingSearch(), SameResult(Failure(row.error, "SLPFindSrvs callback")));
  }
}

TEST_F(ServiceSearch, AnErrorEndsTheSearch) {
  InitializeCore();
  Next(Function::kFindSrvs, Delivers({Code(SLP_NETWORK_ERROR), Service("service:x://h", 1)}));
  EXPECT_THAT(FailingSearch(), SameResult(Failure(SResult::ERR_NETWORK_ERROR, "SLPFindSrvs callback")));
  EXPECT_THAT(scripted_slp::CallbackAnswers(), ElementsAre(SLP_FALSE));
}

TEST_F(ServiceSearch, TurnsExceptionsIntoResults) {
  InitializeCore();
  for (const Function function : {Function::kOpen, Function::kAssociateIP, Function::kFindSrvs}) {
    Next(function, Throws(std::bad_alloc()));
    EXPECT_THAT(FailingSearch({}, "10.0.0.5"),
                SameResult(Failure(SResult::ERR_OUT_OF_MEMORY, "", std::bad_alloc().what())));
    Next(function, Throws(std::runtime_error("broken")));
    EXPECT_THAT(FailingSearch({}, "10.0.0.5"), SameResult(Failure(SResult::ERR_BASIC_API, "", "broken")));
  }
}

TEST_F(ServiceSearch, SurvivesEveryFailingAllocation) {
  InitializeCore();
  scripted_slp::Always(
      Function::kFindSrvs,
      Delivers({Service("service:a-service-type-too-long-for-small-texts://10.0.0.1:80/path", 1),
                Service("service:a-service-type-too-long-for-small-texts://10.0.0.2:80/path", 2)}));
  const std::string type = "service:a-service-type-too-long-for-small-texts";
  const std::vector<std::string> scopes = {"a-scope-that-is-too-long-for-small-texts", "another-such-scope"};
  const std::string no_filter;
  const std::string address = "10.0.0.5";
  int disturbed = 0;
  FailEachAllocation(
      [&] {
        Results results;
        const SResult result = CKelSLPClientImpl::FindServices(results, type, scopes, no_filter, address);
        return std::make_pair(result, results.size());
      },
      [&](const std::pair<SResult, std::size_t>& outcome) {
        ++disturbed;
        // Splitting a URL may fail without harm.
        if (outcome.first.IsOk()) {
          EXPECT_EQ(outcome.second, 2U);
        } else {
          EXPECT_EQ(outcome.first, SResult::ERR_OUT_OF_MEMORY);
          EXPECT_EQ(outcome.second, 0U);
        }
        EXPECT_EQ(scripted_slp::OpenHandles(), 1);
        EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
      });
  EXPECT_GT(disturbed, 10);
}

/// A service type of which a search needs only type and scopes.
class ServiceType : public IKelServiceType {
 public:
  std::string GetTypeString() const override { return "service:mine"; }
  std::string GetAddress() const override { return ""; }
  void SetAddress(const std::string&) override {}
  std::string GetServiceURL() const override { return ""; }
  std::map<EAttr, std::string> GetAttributes() const override { return {}; }
  std::vector<EAttr> GetAttributeTags() const override { return {}; }
  bool SetAttributeValue(const EAttr&, const std::string&) override { return false; }
  std::string GetAttributeValue(const EAttr&) const override { return ""; }
  bool HasAttribute(const EAttr&) const override { return false; }
  std::vector<std::string> GetScopes() const override {
    if (throws_) {
      throw std::runtime_error("no scopes");
    }
    return {"lab"};
  }
  unsigned short GetLifetime() const override { return 1; }
  void SetLifetime(const unsigned short&) override {}

  bool throws_ = false;
};

TEST_F(ServiceSearch, TakesTypeAndScopesFromAServiceType) {
  InitializeCore();
  Next(Function::kFindSrvs, Delivers({Service("service:mine://h", 1)}));
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, ServiceType(), "(a=1)", "10.0.0.5"),
              SameResult(kSuccess));
  EXPECT_EQ(Members(results), Members({{"service:mine://h", 1, "service:mine", "h"}}));
  EXPECT_THAT(scripted_slp::Calls("SLPAssociateIP"), ElementsAre("SLPAssociateIP(#3,10.0.0.5)"));
  EXPECT_THAT(scripted_slp::Calls("SLPFindSrvs"), ElementsAre("SLPFindSrvs(#3,service:mine,LAB,(a=1))"));
}

TEST_F(ServiceSearch, FailuresReadTheSameForAServiceType) {
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, ServiceType(), "", ""),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
  InitializeCore();
  Next(Function::kFindSrvs, Returns(SLP_NETWORK_ERROR));
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, ServiceType(), "", ""),
              SameResult(Failure(SResult::ERR_NETWORK_ERROR, "SLPFindSrvs")));
}

TEST_F(ServiceSearch, AServiceTypeMayThrow) {
  InitializeCore();
  ServiceType type;
  type.throws_ = true;
  Results results;
  EXPECT_THAT(CKelSLPClientImpl::FindServices(results, type, "", ""),
              SameResult(SResult(SResult::ERR_BASIC_API, "no scopes")));
}

}  // namespace
}  // namespace kelsd
