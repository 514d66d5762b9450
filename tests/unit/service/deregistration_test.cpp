#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <mutex>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "service_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Code;
using scripted_slp::Delivers;
using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kName = "kelsd::CKelSLPServiceImpl::DeregisterService";

class Deregistration : public ServiceFixture {};

TEST_F(Deregistration, OpensAHandleOfItsOwn) {
  Registered();
  EXPECT_THAT(agent.DeregisterService(kUrl), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPOpen(en,0)=#4",
                          "SLPDereg(#4,service:x://10.0.0.1:80)", "SLPClose(#4)"));
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(Deregistration, OfTheLastServiceStopsTheTimer) {
  Registered("service:x://a");
  Registered("service:x://b");
  EXPECT_THAT(agent.DeregisterService("service:x://a"), SameResult(kSuccess));
  EXPECT_EQ(timers.Live(), 1U);
  EXPECT_THAT(agent.DeregisterService("service:x://b"), SameResult(kSuccess));
  EXPECT_EQ(timers.Live(), 0U);
  Registered("service:x://c");
  EXPECT_EQ(timers.Live(), 1U);
}

TEST_F(Deregistration, OfAnUnknownServiceStillTellsTheDaemon) {
  EXPECT_THAT(agent.DeregisterService(kUrl), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls("SLPDereg"), ElementsAre("SLPDereg(#3,service:x://10.0.0.1:80)"));
}

TEST_F(Deregistration, ThatFailsHasGivenUpTheServiceAlready) {
  Registered();
  Next(Function::kDereg, Returns(SLP_SCOPE_NOT_SUPPORTED));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_UNKNOWN, "", kName + " SLPDereg")));
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  EXPECT_EQ(timers.Live(), 0U);
  Next(Function::kDereg, Delivers({Code(SLP_INVALID_REGISTRATION)}));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_INVALID_DEREGISTRATION, "", kName + " SLPDereg callback")));
}

TEST_F(Deregistration, GivesUpTheServiceAlsoWhenTheDaemonDoesNotStart) {
  Registered();
  services.SetState(platform::kServiceStopped);
  services.Fail(ServiceCall::kStart);
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                 kName + " kelsd::CKelSLPServiceImpl::EnsureSLPDIsRunning "
                                         "kelsd::CKelSLPServiceImpl::StartSLPD StartService")));
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(Deregistration, OfABadUrlChangesNothing) {
  Registered();
  SKelServiceSearchResult parsed;
  const SResult bad_url = CKelSLPImpl::ParseServiceURL(parsed, "");
  EXPECT_THAT(agent.DeregisterService(""), SameResult(bad_url.PrependErrorDebug(kName, " ")));
  EXPECT_THAT(RegisteredUrls(), ElementsAre(kUrl));
  EXPECT_THAT(services.Calls(), IsEmpty());
}

TEST_F(Deregistration, ReportsAHandleThatDoesNotOpen) {
  Next(Function::kOpen, Returns(SLP_NOT_IMPLEMENTED));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_ASYNC_NOT_SUPPORTED, "",
                                 kName + " kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
}

TEST_F(Deregistration, StartsADaemonThatDoesNotRunAndRenewsTheOthersThen) {
  Registered("service:x://a");
  Registered("service:x://b");
  services.SetState(platform::kServiceStopped);
  EXPECT_THAT(agent.DeregisterService("service:x://a"), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
  EXPECT_THAT(scripted_slp::Calls("SLPReg"), ElementsAre("SLPReg(#5,service:x://b,60,null,,1)"));
}

TEST_F(Deregistration, NeedsNoInitialisedCore) {
  CKelSLPImpl::Shutdown();
  EXPECT_THAT(agent.DeregisterService(kUrl), SameResult(kSuccess));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(Deregistration, DoesNotTakeTheCoreLock) {
  const std::unique_lock core_lock(CKelSLPImpl::CoreLock());
  std::future<SResult> result = std::async(std::launch::async, [&] { return agent.DeregisterService(kUrl); });
  EXPECT_THAT(result.get(), SameResult(kSuccess));
}

TEST_F(Deregistration, KeepsTheSettingsOfClientsOutOfTheSnapshot) {
  CKelSLPClientConfig client;
  EXPECT_THAT(client.SetMTU(1300), SameResult(kSuccess));
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(client), SameResult(kSuccess));
  std::future<SResult> initialization;
  Next(Function::kDereg, scripted_slp::Runs([&] {
         initialization = std::async(std::launch::async, [] { return CKelSLPImpl::ReInitialize(false); });
         // Long enough for an initialisation that doesn't wait.
         EXPECT_EQ(initialization.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
       }));
  EXPECT_THAT(agent.DeregisterService(kUrl), SameResult(kSuccess));
  EXPECT_THAT(initialization.get(), SameResult(kSuccess));
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(agent.GetSLPServiceConfig(config, errors), SameResult(kSuccess));
  EXPECT_EQ(config.GetMTU(), 1400);
}

TEST_F(Deregistration, InitialisesAgainWithTheCoreLockWhenTheVariableIsNew) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  std::shared_lock search(CKelSLPImpl::CoreLock());
  std::future<SResult> waiting =
      std::async(std::launch::async, [&] { return agent.DeregisterService(kUrl); });
  // Long enough for an initialisation that doesn't wait to have begun.
  EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls("SLPClose"), IsEmpty());
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", folder.Path("slp.conf"));
  search.unlock();
  EXPECT_THAT(waiting.get(), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4",
                          "SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPOpen(en,0)=#5",
                          "SLPDereg(#5,service:x://10.0.0.1:80)", "SLPClose(#5)"));
}

TEST_F(Deregistration, TellsOfBothWhenTheInitialisationFails) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, Returns(SLP_AUTHENTICATION_FAILED));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: ",
                                 kName + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile "
                                         "kelsd::CKelSLPImpl::ReInitialize "
                                         "kelsd::CKelSLPImpl::ReInitializeInternal "
                                         "kelsd::CKelSLPImpl::InitializeInternal "
                                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
}

TEST_F(Deregistration, TellsWhyTheInitialisationFailed) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: broken",
                                 kName + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile "
                                         "kelsd::CKelSLPImpl::ReInitialize ")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(Deregistration, TurnsExceptionsIntoResultsAndUndoesEverything) {
  Registered();
  Next(Function::kDereg, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(agent.DeregisterService(kUrl),
              SameResult(SResult(SResult::ERR_BASIC_API, "broken", kName + " ")));
  EXPECT_EQ(scripted_slp::OpenHandles(), 1);
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  // Not locked.
  std::async(std::launch::async, [&] {
    EXPECT_THAT(agent.DeregisterService(kUrl), SameResult(kSuccess));
  }).get();
}

}  // namespace
}  // namespace kelsd
