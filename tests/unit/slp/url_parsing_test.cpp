#include <new>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "kelsd/CKelSLP.h"
#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;

/// What the compiler at hand calls the call operator of a lambda.
std::string LambdaName() {
  return [] { return std::string(__FUNCTION__); }();
}

auto Members(const SKelServiceSearchResult& result) {
  return std::make_tuple(result.URL, result.Lifetime, result.TypeString, result.Host, result.Port,
                         result.NetFamily, result.ServicePart);
}

const SKelServiceSearchResult& Before() {
  static const SKelServiceSearchResult before("url", 7, "type", "host", 9, "family", "part");
  return before;
}

class UrlParsing : public CoreFixture {};

TEST_F(UrlParsing, SplitsUrls) {
  struct Row {
    std::string url;
    std::string type;
    std::string host;
    unsigned int port;
    std::string family;
    std::string part;
  };
  const std::vector<Row> rows = {
      {"service:zdrest.tamro:http://10.0.0.5:8080/api", "service:zdrest.tamro:http", "10.0.0.5", 8080, "",
       "/api"},
      {"service:zdrest.tamro:http://10.0.0.5:8080", "service:zdrest.tamro:http", "10.0.0.5", 8080, "", ""},
      {"service:zdrest.tamro:http://10.0.0.5/api", "service:zdrest.tamro:http", "10.0.0.5", 0, "", "/api"},
      {"service:x://[::1]:80/p", "service:x", "::1", 80, "v6", "/p"},
      {"http://host", "http", "host", 0, "", ""},
  };
  for (const Row& row : rows) {
    SKelServiceSearchResult result = Before();
    EXPECT_THAT(CKelSLP::ParseServiceURL(result, row.url), SameResult(SResult(SResult::ERR_SUCCESS)));
    EXPECT_EQ(Members(result), std::make_tuple(Before().URL, Before().Lifetime, row.type, row.host, row.port,
                                               row.family, row.part));
  }
}

TEST_F(UrlParsing, TakesEachPartFromItsPlace) {
  scripted_slp::Reply reply;
  reply.url = scripted_slp::ParsedURL{"TYPE", "HOST", 4711, "FAMILY", "PART"};
  Next(Function::kParseSrvURL, reply);
  SKelServiceSearchResult result;
  EXPECT_THAT(CKelSLPImpl::ParseServiceURL(result, "any"), SameResult(SResult(SResult::ERR_SUCCESS)));
  EXPECT_EQ(Members(result), Members(SKelServiceSearchResult("", 0, "TYPE", "HOST", 4711, "FAMILY", "PART")));
}

TEST_F(UrlParsing, RefusesAnEmptyUrlWithoutAsking) {
  SKelServiceSearchResult result = Before();
  EXPECT_THAT(CKelSLP::ParseServiceURL(result, ""),
              SameResult(SResult(SResult::ERR_URL_EMPTY, "", LambdaName())));
  EXPECT_EQ(Members(result), Members(Before()));
  EXPECT_THAT(scripted_slp::Calls(), testing::IsEmpty());
}

TEST_F(UrlParsing, RefusesUrlsWithoutAnAddress) {
  for (const char* url : {"service:x://", "service:x:///path", "service:x://:80"}) {
    SKelServiceSearchResult result = Before();
    EXPECT_THAT(CKelSLP::ParseServiceURL(result, url),
                SameResult(SResult(SResult::ERR_URL_ADDRESS_EMPTY, "", LambdaName())));
    EXPECT_EQ(Members(result), Members(Before()));
  }
}

TEST_F(UrlParsing, RefusesWhatIsNoUrl) {
  SKelServiceSearchResult result = Before();
  EXPECT_THAT(CKelSLP::ParseServiceURL(result, "not a url"),
              SameResult(SResult(SResult::ERR_URL_INVALID, "", LambdaName() + " SLPParseSrvURL")));
  EXPECT_EQ(Members(result), Members(Before()));
}

TEST_F(UrlParsing, MapsTheCodesOfParseSrvURL) {
  struct Row {
    SLPError slp;
    SResult::EError error;
  };
  const std::vector<Row> rows = {
      {SLP_MEMORY_ALLOC_FAILED, SResult::ERR_OUT_OF_MEMORY},
      {SLP_PARSE_ERROR, SResult::ERR_URL_INVALID},
      {SLP_PARAMETER_BAD, SResult::ERR_UNKNOWN},
      {SLP_INTERNAL_SYSTEM_ERROR, SResult::ERR_UNKNOWN},
      {SLP_LAST_CALL, SResult::ERR_UNKNOWN},
      {SLPError(-30), SResult::ERR_UNKNOWN},
  };
  for (const Row& row : rows) {
    // Also when the failing call hands something out, it is released.
    scripted_slp::Reply reply = Returns(row.slp);
    reply.url = scripted_slp::ParsedURL{"t", "h", 1, "", ""};
    Next(Function::kParseSrvURL, reply);
    SKelServiceSearchResult result = Before();
    EXPECT_THAT(CKelSLPImpl::ParseServiceURL(result, "service:x://h"),
                SameResult(SResult(row.error, "", LambdaName() + " SLPParseSrvURL")));
    EXPECT_EQ(Members(result), Members(Before()));
  }
}

TEST_F(UrlParsing, TellsThatNothingWasHandedOut) {
  Next(Function::kParseSrvURL, scripted_slp::HandsOutNothing());
  SKelServiceSearchResult result = Before();
  EXPECT_THAT(CKelSLPImpl::ParseServiceURL(result, "service:x://h"),
              SameResult(SResult(SResult::ERR_UNKNOWN, "", LambdaName() + " SLPParseSrvURL NULL")));
  EXPECT_EQ(Members(result), Members(Before()));
}

TEST_F(UrlParsing, TurnsExceptionsIntoResults) {
  SKelServiceSearchResult result = Before();
  Next(Function::kParseSrvURL, scripted_slp::Throws(std::bad_alloc()));
  EXPECT_THAT(CKelSLPImpl::ParseServiceURL(result, "service:x://h"),
              SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, std::bad_alloc().what())));
  Next(Function::kParseSrvURL, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(CKelSLPImpl::ParseServiceURL(result, "service:x://h"),
              SameResult(SResult(SResult::ERR_BASIC_API, "broken")));
  EXPECT_EQ(Members(result), Members(Before()));
}

TEST_F(UrlParsing, NeedsNeitherInitialisationNorTheLock) {
  CKelSLPImpl::CoreLock().lock();
  SKelServiceSearchResult result;
  EXPECT_THAT(CKelSLP::ParseServiceURL(result, "service:x://h"), SameResult(SResult(SResult::ERR_SUCCESS)));
  CKelSLPImpl::CoreLock().unlock();
}

}  // namespace
}  // namespace kelsd
