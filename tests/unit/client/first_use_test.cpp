// A search that is the first call of all makes the state of the process: without memory for it the search
// fails and lets no exception out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kelsd/CKelSLPClient.h"
#include "support/allocation_failure.h"
#include "support/same_result.h"

namespace kelsd {
namespace {

TEST(FirstUse, OfASearchFailsWithoutMemory) {
  std::vector<SKelServiceSearchResult> found;
  const std::string type = "x";
  const std::string none;
  const std::vector<std::string> scopes;
  FailEachAllocation([&] { return CKelSLPClient::FindServices(found, type, scopes, none, none); },
                     [](const SResult& result) {
                       EXPECT_THAT(result, SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, "std::bad_alloc")));
                     });
  EXPECT_THAT(CKelSLPClient::FindServices(found, type, scopes, none, none),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
}

}  // namespace
}  // namespace kelsd
