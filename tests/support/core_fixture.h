// What the tests of everything above the SLP API share: a core that begins uninitialised on a fresh scripted
// provider, and the check that nothing stays open or unreleased.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kelsd/SResult.h"
#include "slp/slp_impl.h"
#include "support/same_result.h"
#include "support/scripted_slp/scripted_slp.h"

namespace kelsd {

class CoreFixture : public testing::Test {
 protected:
  CoreFixture() {
    CKelSLPImpl::Shutdown();
    scripted_slp::Reset();
  }

  ~CoreFixture() override {
    EXPECT_EQ(scripted_slp::OpenHandles(), CKelSLPImpl::IsInitialized() ? 1 : 0);
    EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
    EXPECT_EQ(scripted_slp::Violations(), std::vector<std::string>());
    CKelSLPImpl::Shutdown();
    EXPECT_EQ(scripted_slp::OpenHandles(), 0);
  }

  CoreFixture(const CoreFixture&) = delete;
  CoreFixture& operator=(const CoreFixture&) = delete;

  /// Initialises, and forgets the calls that this took.
  static void InitializeCore() {
    ASSERT_THAT(CKelSLPImpl::Initialize(), SameResult(SResult(SResult::ERR_SUCCESS)));
    scripted_slp::ForgetCalls();
  }
};

}  // namespace kelsd
