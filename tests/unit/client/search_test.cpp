#include "client/search.h"

#include <stdexcept>

#include "support/core_fixture.h"
#include "unit/client/search_codes.h"

namespace kelsd {
namespace {

class Search : public CoreFixture {};

SearchOutcome Outcome(SLPError error) {
  SearchOutcome outcome;
  outcome.error = error;
  return outcome;
}

TEST_F(Search, TranslatesWhatTheCallReturns) {
  for (const SearchCode& row : FailingSearchCodes()) {
    EXPECT_THAT(SearchResult("SLPCall", row.slp, Outcome(SLP_OK)),
                SameResult(SResult(row.error, "", "SLPCall")));
  }
  EXPECT_THAT(SearchResult("SLPCall", SLP_OK, Outcome(SLP_OK)), SameResult(kSuccess));
}

TEST_F(Search, TranslatesWhatTheCallbackWasTold) {
  for (const SearchCode& row : FailingSearchCodes()) {
    EXPECT_THAT(SearchResult("SLPCall", SLP_OK, Outcome(row.slp)),
                SameResult(SResult(row.error, "", "SLPCall callback")));
  }
}

TEST_F(Search, TheCallGoesBeforeItsCallback) {
  EXPECT_THAT(SearchResult("SLPCall", SLP_PARSE_ERROR, Outcome(SLP_NETWORK_ERROR)),
              SameResult(SResult(SResult::ERR_PARSE_ERROR, "", "SLPCall")));
}

TEST_F(Search, AnExceptionOfTheCallbackGoesOnAfterTheCall) {
  SearchOutcome outcome;
  EXPECT_EQ(HandleReply(outcome, SLP_OK, []() -> SLPBoolean { throw std::runtime_error("broken"); }),
            SLP_FALSE);
  EXPECT_THROW(SearchResult("SLPCall", SLP_OK, outcome), std::runtime_error);
}

TEST_F(Search, TheEndOfAResultIsNoError) {
  SearchOutcome outcome;
  EXPECT_EQ(HandleReply(outcome, SLP_LAST_CALL, [] { return SLP_TRUE; }), SLP_FALSE);
  EXPECT_EQ(outcome.error, SLP_OK);
}

TEST_F(Search, AnErrorIsKeptAndEndsTheSearch) {
  SearchOutcome outcome;
  EXPECT_EQ(HandleReply(outcome, SLP_NETWORK_ERROR, [] { return SLP_TRUE; }), SLP_FALSE);
  EXPECT_EQ(outcome.error, SLP_NETWORK_ERROR);
}

TEST_F(Search, ScopesAreCleanedAndSorted) {
  std::string list;
  EXPECT_THAT(MakeSearchScopes(list, {" tamro ", "", "Lab"}), SameResult(kSuccess));
  EXPECT_EQ(list, "LAB,TAMRO");
}

}  // namespace
}  // namespace kelsd
