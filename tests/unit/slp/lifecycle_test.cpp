#include <future>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "kelsd/CKelSLP.h"
#include "slp/slp_impl.h"
#include "support/allocation_failure.h"
#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using scripted_slp::Throws;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class Lifecycle : public CoreFixture {};

std::vector<std::string> Opens() {
  return scripted_slp::Calls("SLPOpen");
}

TEST_F(Lifecycle, BeginsUninitialised) {
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(Lifecycle, InitialisesInThisOrder) {
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLP::IsInitialized());
  EXPECT_THAT(
      scripted_slp::Calls(),
      ElementsAre(
          "SLPOpen(en,0)=#1",
          // The snapshot.
          "SLPGetProperty(net.slp.multicastTTL)", "SLPGetProperty(net.slp.unicastMaximumWait)",
          "SLPGetProperty(net.slp.unicastTimeouts)", "SLPGetProperty(net.slp.MTU)",
          "SLPGetProperty(net.slp.broadcastAddr)", "SLPGetProperty(net.slp.useDHCP)",
          "SLPGetProperty(net.slp.interfaces)", "SLPGetProperty(net.slp.activeDADetection)",
          "SLPGetProperty(net.slp.port)", "SLPGetProperty(net.slp.securityEnabled)",
          "SLPGetProperty(net.slp.useIPv4)", "SLPGetProperty(net.slp.useIPv6)",
          "SLPGetProperty(net.slp.OpenSLPVersion)", "SLPGetProperty(net.slp.isDA)",
          "SLPGetProperty(net.slp.DAHeartBeat)", "SLPGetProperty(net.slp.staleDACheckPeriod)",
          "SLPGetProperty(net.slp.useScopes)", "SLPGetProperty(net.slp.DAAddresses)",
          "SLPGetProperty(net.slp.watchRegistrationPID)", "SLPGetProperty(net.slp.indexSrvtype)",
          "SLPGetProperty(net.slp.indexedAttributes)", "SLPGetProperty(net.slp.traceDATraffic)",
          "SLPGetProperty(net.slp.traceReg)", "SLPGetProperty(net.slp.traceDrop)",
          "SLPGetProperty(net.slp.traceMsg)", "SLPGetProperty(net.slp.appendLog)",
          "SLPGetProperty(net.slp.isBroadcastOnly)", "SLPGetProperty(net.slp.passiveDADetection)",
          "SLPGetProperty(net.slp.DAActiveDiscoveryInterval)", "SLPGetProperty(net.slp.checkSourceAddr)",
          // The resident handle.
          "SLPClose(#1)", "SLPOpen(en,0)=#2",
          // The client configuration.
          "SLPSetProperty(net.slp.multicastTTL,255)", "SLPSetProperty(net.slp.unicastMaximumWait,4000)",
          "SLPSetProperty(net.slp.unicastTimeouts,500,750,1100,1600)", "SLPSetProperty(net.slp.MTU,1400)",
          "SLPSetProperty(net.slp.broadcastAddr,255.255.255.255)", "SLPSetProperty(net.slp.useDHCP,true)",
          "SLPSetProperty(net.slp.interfaces,)", "SLPSetProperty(net.slp.maxResults,-1)",
          "SLPSetProperty(net.slp.DADiscoveryMaximumWait,4000)",
          "SLPSetProperty(net.slp.DADiscoveryTimeouts,500,750,1100,1600)",
          "SLPSetProperty(net.slp.multicastMaximumWait,6000)",
          "SLPSetProperty(net.slp.multicastTimeouts,500,750,1100,1600,2000)",
          "SLPGetProperty(net.slp.locale)"));
}

TEST_F(Lifecycle, ASecondInitialisationDoesNothing) {
  InitializeCore();
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(Lifecycle, FailsWhenTheFirstHandleDoesNotOpen) {
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(CKelSLP::Initialize(),
              SameResult(SResult(SResult::ERR_BASIC_NETWORK_INIT_FAILED, "",
                                 "kelsd::CKelSLPImpl::Initialize kelsd::CKelSLPImpl::InitializeInternal "
                                 "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPOpen(en,0)"));
}

TEST_F(Lifecycle, FailsWhenTheSecondHandleDoesNotOpen) {
  Next(Function::kOpen, scripted_slp::Runs([] {}));
  Next(Function::kOpen, scripted_slp::HandsOutNothing());
  EXPECT_THAT(CKelSLP::Initialize(),
              SameResult(SResult(SResult::ERR_UNKNOWN, "",
                                 "kelsd::CKelSLPImpl::Initialize kelsd::CKelSLPImpl::InitializeInternal "
                                 "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen handle NULL")));
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPOpen(en,0)=#1", "SLPClose(#1)", "SLPOpen(en,0)"));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty"), IsEmpty());
}

TEST_F(Lifecycle, CanBeInitialisedAfterAFailure) {
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  ASSERT_FALSE(CKelSLP::Initialize().IsOk());
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLP::IsInitialized());
}

TEST_F(Lifecycle, AnUnreadablePropertyDoesNotStopInitialisation) {
  scripted_slp::RemoveProperty("net.slp.isDA");
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(kSuccess));
  EXPECT_THAT(CKelSLPImpl::SnapshotErrorsUnlocked(),
              ElementsAre(SameResult(SResult(SResult::ERR_PROPERTY_GET, "Property name: net.slp.isDA",
                                             "CKelSLPImpl::GetSLPServiceConfigInternal "
                                             "kelsd::CKelSLPImpl::GetBoolProperty "
                                             "kelsd::CKelSLPImpl::GetSLPProperty"))));
}

TEST_F(Lifecycle, ReInitialisationClosesTheResidentHandleFirst) {
  InitializeCore();
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLP::IsInitialized());
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4"));
}

TEST_F(Lifecycle, ReInitialisationInitialisesACoreThatIsNot) {
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLP::IsInitialized());
}

TEST_F(Lifecycle, ReInitialisationReadsFilesAgain) {
  InitializeCore();
  scripted_slp::SetFileProperty("net.slp.useScopes", "LAB");
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
  EXPECT_THAT(CKelSLPImpl::PropertySnapshotUnlocked().GetUseScopes(), ElementsAre("LAB"));
}

TEST_F(Lifecycle, ReInitialisationAppliesTheKeptClientConfigurationAgain) {
  InitializeCore();
  CKelSLPClientConfig config;
  ASSERT_TRUE(config.SetMTU(1000).IsOk());
  ASSERT_TRUE(CKelSLPImpl::SetSLPClientConfig(config).IsOk());
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
  EXPECT_EQ(scripted_slp::Property("net.slp.MTU"), "1000");
  EXPECT_THAT(CKelSLPImpl::ReInitialize(true), SameResult(kSuccess));
  EXPECT_EQ(scripted_slp::Property("net.slp.MTU"), "1400");
}

TEST_F(Lifecycle, TheTrailOfAFailedReInitialisationNamesEachStep) {
  const std::string trail =
      "kelsd::CKelSLPImpl::ReInitialize kelsd::CKelSLPImpl::ReInitializeInternal "
      "kelsd::CKelSLPImpl::InitializeInternal kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen";
  InitializeCore();
  Next(Function::kOpen, Returns(SLP_MEMORY_ALLOC_FAILED));
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, "", trail)));
  EXPECT_FALSE(CKelSLP::IsInitialized());
}

TEST_F(Lifecycle, ReInitialisationFailsWhenItsSecondHandleDoesNotOpen) {
  InitializeCore();
  Next(Function::kOpen, scripted_slp::Runs([] {}));
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_EQ(CKelSLPImpl::ReInitialize(false), SResult::ERR_BASIC_NETWORK_INIT_FAILED);
  EXPECT_FALSE(CKelSLP::IsInitialized());
}

TEST_F(Lifecycle, ReInitializeInternalHasATrailOfItsOwn) {
  InitializeCore();
  const std::unique_lock lock(CKelSLPImpl::CoreLock());
  Next(Function::kOpen, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(CKelSLPImpl::ReInitializeInternal(false),
              SameResult(SResult(SResult::ERR_INVALID_PARAMETER, "",
                                 "kelsd::CKelSLPImpl::ReInitializeInternal "
                                 "kelsd::CKelSLPImpl::InitializeInternal "
                                 "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLPImpl::IsInitializedUnlocked());
}

TEST_F(Lifecycle, ShutdownClosesTheHandleAndForgetsTheClientConfiguration) {
  CKelSLPClientConfig config;
  ASSERT_TRUE(config.SetMTU(1000).IsOk());
  ASSERT_TRUE(CKelSLPImpl::SetSLPClientConfig(config).IsOk());
  scripted_slp::ForgetCalls();
  CKelSLPImpl::Shutdown();
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPClose(#2)"));
  CKelSLPImpl::Shutdown();
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPClose(#2)"));
  ASSERT_TRUE(CKelSLP::Initialize().IsOk());
  EXPECT_EQ(scripted_slp::Property("net.slp.MTU"), "1400");
}

TEST_F(Lifecycle, ClosingTheResidentHandleTwiceClosesItOnce) {
  InitializeCore();
  const std::unique_lock lock(CKelSLPImpl::CoreLock());
  CKelSLPImpl::CloseResidentHandleUnlocked();
  CKelSLPImpl::CloseResidentHandleUnlocked();
  EXPECT_THAT(scripted_slp::Calls(), ElementsAre("SLPClose(#2)"));
}

TEST_F(Lifecycle, TheCoreCountsAsUninitialisedWhileTheResidentHandleCloses) {
  InitializeCore();
  bool initialized = true;
  Next(Function::kClose, scripted_slp::Runs([&] { initialized = CKelSLPImpl::IsInitializedUnlocked(); }));
  CKelSLPImpl::Shutdown();
  EXPECT_FALSE(initialized);
}

TEST_F(Lifecycle, ExceptionsBecomeResults) {
  Next(Function::kOpen, Throws(std::bad_alloc()));
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, std::bad_alloc().what(),
                                                        "kelsd::CKelSLPImpl::Initialize ")));
  EXPECT_FALSE(CKelSLP::IsInitialized());
  // While the snapshot is taken: the first handle is closed.
  Next(Function::kGetProperty, Throws(std::runtime_error("broken")));
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false),
              SameResult(SResult(SResult::ERR_BASIC_API, "broken", "kelsd::CKelSLPImpl::ReInitialize ")));
  EXPECT_FALSE(CKelSLP::IsInitialized());
  EXPECT_EQ(scripted_slp::OpenHandles(), 0);
}

TEST_F(Lifecycle, NothingThatFailsAfterTheResidentHandleIsOpenMatters) {
  scripted_slp::Always(Function::kSetProperty, Throws(std::runtime_error("broken")));
  scripted_slp::Decide(Function::kGetProperty,
                       [](const std::string& call) -> std::optional<scripted_slp::Reply> {
                         if (call == "SLPGetProperty(net.slp.locale)") {
                           return Throws(std::bad_alloc());
                         }
                         return std::nullopt;
                       });
  EXPECT_THAT(CKelSLP::Initialize(), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLP::IsInitialized());
  EXPECT_EQ(scripted_slp::Calls("SLPSetProperty").size(), 12U);
}

TEST_F(Lifecycle, SurvivesEveryFailingAllocation) {
  scripted_slp::RemoveProperty("net.slp.isDA");
  int failed = 0;
  FailEachAllocation(
      [] {
        SResult result = CKelSLPImpl::ReInitialize(true);
        return result;
      },
      [&](const SResult& result) {
        // What fails after the resident handle is open doesn't matter.
        EXPECT_EQ(result, CKelSLP::IsInitialized() ? SResult::ERR_SUCCESS : SResult::ERR_OUT_OF_MEMORY);
        failed += result.IsOk() ? 0 : 1;
        EXPECT_EQ(scripted_slp::OpenHandles(), result.IsOk() ? 1 : 0);
      });
  EXPECT_GT(failed, 30);
  EXPECT_TRUE(CKelSLP::IsInitialized());
}

TEST_F(Lifecycle, ASnapshotOutlivesFailures) {
  scripted_slp::SetFileProperty("net.slp.useScopes", "LAB");
  scripted_slp::RemoveProperty("net.slp.isDA");
  InitializeCore();
  scripted_slp::SetFileProperty("net.slp.useScopes", "OTHER");
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  ASSERT_FALSE(CKelSLPImpl::ReInitialize(false).IsOk());
  EXPECT_THAT(CKelSLPImpl::PropertySnapshotUnlocked().GetUseScopes(), ElementsAre("LAB"));
  EXPECT_EQ(CKelSLPImpl::SnapshotErrorsUnlocked().size(), 1U);
  // A snapshot that was taken counts, although the second handle failed; its errors replace the former ones.
  scripted_slp::SetFileProperty("net.slp.isDA", "false");
  Next(Function::kOpen, scripted_slp::Runs([] {}));
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  ASSERT_FALSE(CKelSLPImpl::ReInitialize(false).IsOk());
  EXPECT_THAT(CKelSLPImpl::PropertySnapshotUnlocked().GetUseScopes(), ElementsAre("OTHER"));
  EXPECT_THAT(CKelSLPImpl::SnapshotErrorsUnlocked(), IsEmpty());
}

TEST_F(Lifecycle, InvokeNoThrowPassesResultsOn) {
  EXPECT_THAT(CKelSLPImpl::InvokeNoThrow([] { return SResult(SResult::ERR_URL_EMPTY, "detail", "debug"); }),
              SameResult(SResult(SResult::ERR_URL_EMPTY, "detail", "debug")));
}

TEST_F(Lifecycle, InvokeNoThrowCatchesExceptions) {
  EXPECT_THAT(CKelSLPImpl::InvokeNoThrow([]() -> SResult { throw std::bad_alloc(); }),
              SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, std::bad_alloc().what())));
  EXPECT_THAT(CKelSLPImpl::InvokeNoThrow([]() -> SResult { throw std::bad_array_new_length(); }),
              SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, std::bad_array_new_length().what())));
  EXPECT_THAT(CKelSLPImpl::InvokeNoThrow([]() -> SResult { throw std::out_of_range("range"); }),
              SameResult(SResult(SResult::ERR_BASIC_API, "range")));
  EXPECT_THROW(CKelSLPImpl::InvokeNoThrow([]() -> SResult { throw 42; }), int);
}

TEST_F(Lifecycle, WaitsForThoseThatHoldTheLockShared) {
  InitializeCore();
  CKelSLPImpl::CoreLock().lock_shared();
  EXPECT_TRUE(CKelSLP::IsInitialized());
  std::future<SResult> initialized =
      std::async(std::launch::async, [] { return CKelSLPImpl::ReInitialize(false); });
  // The handle cannot be replaced before the lock is free, however long the other thread gets.
  EXPECT_EQ(initialized.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
  CKelSLPImpl::CoreLock().unlock_shared();
  EXPECT_THAT(initialized.get(), SameResult(kSuccess));
}

TEST_F(Lifecycle, InitialisesOnceHoweverManyThreadsAsk) {
  std::vector<std::future<SResult>> threads;
  for (int i = 0; i < 8; ++i) {
    threads.push_back(std::async(std::launch::async, [] { return CKelSLP::Initialize(); }));
  }
  for (std::future<SResult>& thread : threads) {
    EXPECT_THAT(thread.get(), SameResult(kSuccess));
  }
  EXPECT_THAT(Opens(), ElementsAre("SLPOpen(en,0)=#1", "SLPOpen(en,0)=#2"));
}

}  // namespace
}  // namespace kelsd
