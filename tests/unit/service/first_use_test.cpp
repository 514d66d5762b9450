// The state of the process is made by the first call, whichever it is: without memory for it that call fails
// and lets no exception out, and the next one tries again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "kelsd/CKelSLPService.h"
#include "slp/slp_impl.h"
#include "support/allocation_failure.h"
#include "support/same_result.h"

namespace kelsd {
namespace {

const SResult kOutOfMemory(SResult::ERR_OUT_OF_MEMORY, "std::bad_alloc");

TEST(FirstUse, OfTheCoreFailsWithoutMemory) {
  CKelSLPClientConfig config;
  std::vector<SResult> errors;
  const std::vector<std::function<SResult()>> calls = {
      [&] { return CKelSLPImpl::GetSLPClientConfig(config, errors); },
      [] { return CKelSLP::IsInitialized() ? SResult(SResult::ERR_SUCCESS) : kOutOfMemory; },
      [] {
        CKelSLPImpl::Shutdown();
        return kOutOfMemory;
      },
  };
  std::size_t call = 0;
  FailEachAllocation([&] { return calls[call++ % calls.size()](); },
                     [&](const SResult& result) { EXPECT_THAT(result, SameResult(kOutOfMemory)) << call; });
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
}

TEST(FirstUse, OfTheAgentFailsWithoutMemory) {
  const std::vector<std::function<SResult()>> calls = {
      [] { return CKelSLPService::SetRegistrationCheckInterval(2000); },
      [] {
        CKelSLPService::SetReRegistrationFailedCallback(nullptr);
        return kOutOfMemory;
      },
  };
  std::size_t call = 0;
  FailEachAllocation([&] { return calls[call++ % calls.size()](); },
                     [&](const SResult& result) { EXPECT_THAT(result, SameResult(kOutOfMemory)) << call; });
  EXPECT_THAT(CKelSLPService::SetRegistrationCheckInterval(2000), SameResult(SResult(SResult::ERR_SUCCESS)));
}

}  // namespace
}  // namespace kelsd
