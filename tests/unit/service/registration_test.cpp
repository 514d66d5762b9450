#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <map>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "service_fixture.h"
#include "support/allocation_failure.h"

namespace kelsd {
namespace {

using scripted_slp::Code;
using scripted_slp::Delivers;
using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kName = "kelsd::CKelSLPServiceImpl::RegisterService";

class Registration : public ServiceFixture {};

TEST_F(Registration, WithoutScopesOpensAHandleOfItsOwnAndLeavesTheResidentOne) {
  EXPECT_THAT(agent.RegisterService(kUrl, 60, {{"x-a", "1,2"}, {"x-b", ""}}, {}), SameResult(kSuccess));
  EXPECT_THAT(
      scripted_slp::CallsButProperties(),
      ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPEscape(1,2,0)", "SLPEscape(,0)",
                  "SLPOpen(en,0)=#3", "SLPReg(#3,service:x://10.0.0.1:80,60,null,(x-a=1\\2C2),(x-b=),1)",
                  "SLPClose(#3)"));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty"), IsEmpty());
  EXPECT_EQ(services.CountCalls("StartService") + services.CountCalls("ControlService"), 0U);
  EXPECT_EQ(folder.Read("slp.conf"), "");
}

TEST_F(Registration, WithScopesThatAreServedSetsThemOnAFreshHandleAndInitialisesAgain) {
  EXPECT_THAT(Register(kUrl, 60, {" default "}), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)",                 //
                          "SLPClose(#2)", "SLPOpen(en,0)=#3",                        // the registration's own
                          "SLPReg(#3,service:x://10.0.0.1:80,60,null,,1)",           //
                          "SLPClose(#3)",                                            //
                          "SLPOpen(en,0)=#4", "SLPClose(#4)", "SLPOpen(en,0)=#5"));  // the core again
  // As it was given.
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty(net.slp.useScopes"),
              ElementsAre("SLPSetProperty(net.slp.useScopes, default )"));
  EXPECT_EQ(services.CountCalls("StartService") + services.CountCalls("ControlService"), 0U);
  EXPECT_EQ(folder.Read("slp.conf"), "");
}

TEST_F(Registration, SetsTheScopesAfterItsHandleWasOpenedAndBeforeItRegisters) {
  EXPECT_THAT(Register(kUrl, 60, {"DEFAULT"}), SameResult(kSuccess));
  const std::vector<std::string> calls = scripted_slp::Calls();
  const auto position = [&](const std::string& prefix) {
    return std::find_if(calls.begin(), calls.end(),
                        [&](const std::string& call) { return call.starts_with(prefix); }) -
           calls.begin();
  };
  EXPECT_LT(position("SLPOpen(en,0)=#3"), position("SLPSetProperty(net.slp.useScopes,DEFAULT)"));
  EXPECT_LT(position("SLPSetProperty(net.slp.useScopes,DEFAULT)"), position("SLPReg"));
}

class ScopeAdmission : public ServiceFixture {
 protected:
  ScopeAdmission() {
    // The daemon and the SLP library read the file when the daemon is started.
    services.OnStart([this] {
      const std::string text = folder.Read("slp.conf");
      const std::string key = "net.slp.useScopes = ";
      const std::size_t begin = text.find(key) + key.size();
      scripted_slp::SetFileProperty("net.slp.useScopes",
                                    text.substr(begin, text.find("\r\n", begin) - begin));
    });
  }
};

TEST_F(ScopeAdmission, AppendsAMissingScopeAndRestartsTheDaemonBeforeItRegisters) {
  folder.Write("slp.conf", "# ours\nnet.slp.useScopes = LAB,DEFAULT\nforeign = 1\n");
  scripted_slp::SetFileProperty("net.slp.useScopes", "LAB,DEFAULT");
  std::size_t starts_before_registration = 0;
  scripted_slp::Always(Function::kReg, scripted_slp::Runs([&] {
                         starts_before_registration = services.CountCalls("StartService");
                       }));
  EXPECT_THAT(Register(kUrl, 60, {"tamro", "lab", "TAMRO", " other"}), SameResult(kSuccess));
  EXPECT_EQ(folder.Read("slp.conf"),
            "# ours\r\nnet.slp.useScopes = LAB,DEFAULT,TAMRO,OTHER\r\nforeign = 1\r\n");
  EXPECT_THAT(
      scripted_slp::CallsButProperties(),
      ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)",                               //
                  "SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4",  // reload
                  "SLPClose(#4)", "SLPOpen(en,0)=#5", "SLPClose(#5)", "SLPOpen(en,0)=#6",  // restarted
                  "SLPClose(#6)", "SLPOpen(en,0)=#7",                                      //
                  "SLPReg(#7,service:x://10.0.0.1:80,60,null,,1)", "SLPClose(#7)",         //
                  "SLPOpen(en,0)=#8", "SLPClose(#8)", "SLPOpen(en,0)=#9"));
  EXPECT_EQ(starts_before_registration, 1U);
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
  EXPECT_EQ(services.CountCalls("ControlService"), 1U);
  EXPECT_THAT(CKelSLPImpl::PropertySnapshotUnlocked().GetUseScopes(),
              ElementsAre("LAB", "DEFAULT", "TAMRO", "OTHER"));
}

TEST_F(ScopeAdmission, ASecondRegistrationRestartsNothing) {
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}), SameResult(kSuccess));
  services.ForgetCalls();
  const std::string written = folder.Read("slp.conf");
  EXPECT_EQ(written, "net.slp.useScopes = DEFAULT,TAMRO\r\n");
  EXPECT_THAT(Register("service:x://10.0.0.2:80", 60, {" Tamro", "TAMRO"}), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("StartService") + services.CountCalls("ControlService"), 0U);
  EXPECT_EQ(folder.Read("slp.conf"), written);
}

TEST_F(ScopeAdmission, ReadsAgainBeforeItChangesTheConfiguration) {
  // Somebody else has added the scope since the core was initialised.
  scripted_slp::SetFileProperty("net.slp.useScopes", "DEFAULT,TAMRO");
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)",                               //
                          "SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4",  // reload
                          "SLPClose(#4)", "SLPOpen(en,0)=#5",                                      //
                          "SLPReg(#5,service:x://10.0.0.1:80,60,null,,1)", "SLPClose(#5)",         //
                          "SLPOpen(en,0)=#6", "SLPClose(#6)", "SLPOpen(en,0)=#7"));
  EXPECT_EQ(services.CountCalls("StartService") + services.CountCalls("ControlService"), 0U);
  EXPECT_EQ(folder.Read("slp.conf"), "");
}

TEST_F(ScopeAdmission, FollowsAnInitialisationForANewVariable) {
  scripted_slp::RemoveProperty("net.slp.EnvConfigFile");
  Next(Function::kOpen, scripted_slp::Runs([this] { UseConfigFile(folder.Path("slp.conf")); }));
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}), SameResult(kSuccess));
  EXPECT_THAT(
      scripted_slp::CallsButProperties(),
      ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4",  // new variable
                  "SLPParseSrvURL(service:x://10.0.0.1:80)",                               //
                  "SLPClose(#4)", "SLPOpen(en,0)=#5", "SLPClose(#5)", "SLPOpen(en,0)=#6",  // reload
                  "SLPClose(#6)", "SLPOpen(en,0)=#7", "SLPClose(#7)", "SLPOpen(en,0)=#8",  // restarted
                  "SLPClose(#8)", "SLPOpen(en,0)=#9",                                      //
                  "SLPReg(#9,service:x://10.0.0.1:80,60,null,,1)", "SLPClose(#9)",         //
                  "SLPOpen(en,0)=#10", "SLPClose(#10)", "SLPOpen(en,0)=#11"));
  EXPECT_EQ(folder.Read("slp.conf"), "net.slp.useScopes = DEFAULT,TAMRO\r\n");
}

TEST_F(ScopeAdmission, ReportsAFailedReload) {
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}),
              SameResult(SResult(SResult::ERR_BASIC_NETWORK_INIT_FAILED, "",
                                 kName + " kelsd::CKelSLPImpl::InitializeInternal "
                                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(ScopeAdmission, ReportsAFileThatCannotBeWritten) {
  // Gone from where the store looks for it after the check.
  scripted_slp::Always(Function::kParseSrvURL, scripted_slp::Runs([] { ClearEnvironment("OpenSLPConfig"); }));
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}),
              SameResult(SResult(SResult::ERR_ENV_NOT_SET,
                                 "Create an environment variable with name 'OpenSLPConfig' that contains the "
                                 "path to the SLP configuration file e.g. '" +
                                     agent.GetDefaultEnvConfigFileName() + "'.",
                                 kName + " kelsd::CKelSLPServiceImpl::SetLocalScopes "
                                         "kelsd::CKelSLPServiceImpl::GetSLPEnvConfigFileName")));
  EXPECT_EQ(Registrations(), 0U);
}

TEST_F(ScopeAdmission, ReportsARestartThatFails) {
  services.Fail(ServiceCall::kStop);
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}),
              SameResult(SResult(SResult::ERR_SLPD_STOP, "Refused: ControlService.",
                                 kName + " kelsd::CKelSLPServiceImpl::RestartSLPD "
                                         "kelsd::CKelSLPServiceImpl::StopSLPD ControlService")));
  EXPECT_EQ(Registrations(), 0U);
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
}

TEST_F(ScopeAdmission, ReportsAFailedInitialisationAfterTheRestart) {
  services.OnStart([] { Next(Function::kOpen, Returns(SLP_INTERNAL_SYSTEM_ERROR)); });
  EXPECT_THAT(Register(kUrl, 60, {"tamro"}),
              SameResult(SResult(SResult::ERR_BASIC_API, "",
                                 kName + " kelsd::CKelSLPImpl::InitializeInternal "
                                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(Registrations(), 0U);
}

TEST_F(Registration, NeedsAnInitialisedCoreAndStartsNothingWithoutOne) {
  CKelSLPImpl::Shutdown();
  services.SetState(platform::kServiceStopped);
  scripted_slp::ForgetCalls();
  EXPECT_THAT(Register(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED, "", kName)));
  EXPECT_THAT(services.Calls(), IsEmpty());
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(Registration, KeepsWhatWasGivenWithTheTimeOfTheRegistration) {
  clock.AdvanceSeconds(7);
  EXPECT_THAT(agent.RegisterService(kUrl, 30, {{"x-a", " 1 "}}, {"default"}), SameResult(kSuccess));
  EXPECT_THAT(
      agent.GetRegisteredServices(),
      ElementsAre(std::pair(
          kUrl, SRegisteredService{kUrl, 30, {{"x-a", " 1 "}}, {"default"}, FakeClock::kStart + 7, 0})));
  EXPECT_EQ(timers.Periods(), std::vector<std::uint32_t>{2000});
  EXPECT_EQ(timers.Live(), 1U);
}

TEST_F(Registration, TheSecondRegistrationOfAUrlReplacesTheFirst) {
  Registered(kUrl, 30, {"default"});
  clock.AdvanceSeconds(9);
  EXPECT_THAT(agent.RegisterService(kUrl, 90, {{"x-b", "2"}}, {}), SameResult(kSuccess));
  EXPECT_THAT(agent.GetRegisteredServices(),
              ElementsAre(std::pair(
                  kUrl, SRegisteredService{kUrl, 90, {{"x-b", "2"}}, {}, FakeClock::kStart + 9, 0})));
  EXPECT_EQ(timers.Periods(), std::vector<std::uint32_t>{2000});
}

TEST_F(Registration, ThatFailsLeavesTheFormerOneOfTheUrlAsItWas) {
  EXPECT_THAT(agent.RegisterService(kUrl, 30, {{"x-a", "1"}}, {"default"}), SameResult(kSuccess));
  const auto before = agent.GetRegisteredServices();
  clock.AdvanceSeconds(9);
  const auto register_again = [&] { return agent.RegisterService(kUrl, 90, {{"x-b", "2"}}, {}); };
  Next(Function::kReg, Returns(SLP_SCOPE_NOT_SUPPORTED));
  EXPECT_THAT(register_again(), SameResult(SResult(SResult::ERR_SCOPE_NOT_SUPPORTED, "", kName + " SLPReg")));
  EXPECT_EQ(agent.GetRegisteredServices(), before);
  CKelSLPImpl::Shutdown();
  EXPECT_THAT(register_again(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED, "", kName)));
  EXPECT_EQ(agent.GetRegisteredServices(), before);
}

TEST_F(Registration, UrlsAreComparedExactly) {
  Registered("service:x://Host");
  Registered("service:x://host");
  EXPECT_THAT(RegisteredUrls(), ElementsAre("service:x://Host", "service:x://host"));
}

struct BadInput {
  std::string url;
  std::map<std::string, std::string> attributes;
  std::vector<std::string> scopes;
  SResult result;
};

TEST_F(Registration, RefusesBadInputBeforeTheDaemonIsAsked) {
  const SResult bad_url = [] {
    SKelServiceSearchResult parsed;
    return CKelSLPImpl::ParseServiceURL(parsed, "nonsense");
  }();
  const std::vector<BadInput> inputs{
      {"nonsense", {}, {}, bad_url.PrependErrorDebug(kName, " ")},
      {kUrl,
       {{"a b", "1"}},
       {},
       {SResult::ERR_TAG_BAD_CHARACTERS, "tag: a b",
        kName + " kelsd::CKelSLPImpl::CreateSLPAttributeList kelsd::CKelSLPImpl::ValidateTag"}},
      {kUrl,
       {{"a", "1"}, {"A", "2"}},
       {},
       {SResult::ERR_TAG_NOT_UNIQUE, "tag: a, value: 1",
        kName + " kelsd::CKelSLPImpl::CreateSLPAttributeList"}},
      {kUrl,
       {},
       {"default", "a+b"},
       {SResult::ERR_SCOPE_BAD_CHARACTERS, "scope = a+b",
        kName + " kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope"}},
      {kUrl,
       {},
       {" "},
       {SResult::ERR_SCOPE_EMPTY, "",
        kName + " kelsd::CKelSLPImpl::CreateScopesList kelsd::CKelSLPImpl::ValidateScope"}},
  };
  for (const BadInput& input : inputs) {
    EXPECT_THAT(agent.RegisterService(input.url, 60, input.attributes, input.scopes),
                SameResult(input.result));
  }
  EXPECT_THAT(services.Calls(), IsEmpty());
  EXPECT_THAT(scripted_slp::Calls("SLPOpen"), IsEmpty());
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(Registration, StartsADaemonThatDoesNotRunWithoutAForcedPass) {
  Registered("service:x://other");
  services.SetState(platform::kServiceStopped);
  EXPECT_THAT(Register(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
  // The other one is the next pass's.
  EXPECT_THAT(scripted_slp::Calls("SLPReg"), ElementsAre("SLPReg(#4,service:x://10.0.0.1:80,60,null,,1)"));
}

TEST_F(Registration, ReportsADaemonThatDoesNotStart) {
  services.SetState(platform::kServiceStopped);
  services.Fail(ServiceCall::kStart);
  EXPECT_THAT(Register(kUrl, 60, {"DEFAULT"}),
              SameResult(SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                 kName + " kelsd::CKelSLPServiceImpl::EnsureSLPDIsRunning "
                                         "kelsd::CKelSLPServiceImpl::StartSLPD StartService")));
  EXPECT_THAT(scripted_slp::Calls("SLPClose"), IsEmpty());
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
}

TEST_F(Registration, ReportsAHandleThatDoesNotOpenAndInitialisesAgainAllTheSame) {
  Next(Function::kOpen, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(Register(kUrl, 60, {"DEFAULT"}),
              SameResult(SResult(SResult::ERR_INVALID_PARAMETER, "",
                                 kName + " kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(scripted_slp::OpenHandles(), 1);
}

TEST_F(Registration, ReportsWhatTheCallReturnsOrReports) {
  Next(Function::kReg, Delivers({Code(SLP_PARSE_ERROR)}, SLP_NETWORK_TIMED_OUT));
  EXPECT_THAT(Register(), SameResult(SResult(SResult::ERR_NETWORK_TIMED_OUT, "", kName + " SLPReg")));
  Next(Function::kReg, Delivers({Code(SLP_INVALID_REGISTRATION)}));
  EXPECT_THAT(Register(),
              SameResult(SResult(SResult::ERR_INVALID_REGISTRATION, "", kName + " SLPReg callback")));
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  EXPECT_THAT(timers.Periods(), IsEmpty());
}

TEST_F(Registration, AFailedRegistrationWithScopesLeavesAnInitialisedCore) {
  Next(Function::kReg, Returns(SLP_SCOPE_NOT_SUPPORTED));
  EXPECT_THAT(Register(kUrl, 60, {"default"}),
              SameResult(SResult(SResult::ERR_SCOPE_NOT_SUPPORTED, "", kName + " SLPReg")));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
}

TEST_F(Registration, SucceedsAlsoWhenTheCoreCannotBeInitialisedAgain) {
  Next(Function::kOpen, scripted_slp::Runs([] {}));
  Next(Function::kOpen, Returns(SLP_INTERNAL_SYSTEM_ERROR));
  EXPECT_THAT(Register(kUrl, 60, {"default"}), SameResult(kSuccess));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(RegisteredUrls(), ElementsAre(kUrl));
}

TEST_F(Registration, TurnsExceptionsIntoResultsAndUndoesEverything) {
  Next(Function::kReg, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(Register(kUrl, 60, {"default"}),
              SameResult(SResult(SResult::ERR_BASIC_API, "broken", kName + " ")));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(scripted_slp::OpenHandles(), 1);
  // Neither busy nor locked.
  std::async(std::launch::async, [&] { EXPECT_THAT(Register(), SameResult(kSuccess)); }).get();
  clock.AdvanceSeconds(100);
  timers.Tick();
  EXPECT_EQ(Registrations(), 3U);
}

TEST_F(Registration, SurvivesEveryFailedAllocation) {
  const std::map<std::string, std::string> attributes{{"x-a", "a long value of an attribute, to be escaped"}};
  const std::vector<std::string> scopes{"default"};
  auto before = agent.GetRegisteredServices();
  FailEachAllocation(
      [&] { return agent.RegisterService(kUrl, 60, attributes, scopes); },
      [&](const SResult& result) {
        EXPECT_THAT(result.GetErrorCode(),
                    testing::AnyOf(SResult::ERR_OUT_OF_MEMORY, SResult::ERR_BASIC_API, SResult::ERR_SUCCESS));
        EXPECT_EQ(services.OpenHandles(), 0);
        services.ForgetCalls();
        EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
        // An initialisation that failed for want of memory, too, is made up for by the next one.
        EXPECT_THAT(CKelSLPImpl::Initialize(), SameResult(kSuccess));
        EXPECT_EQ(scripted_slp::OpenHandles(), 1);
        auto after = agent.GetRegisteredServices();
        if (result.IsOk()) {
          EXPECT_EQ(after.count(kUrl), 1U);
        } else {
          EXPECT_EQ(after, before);
        }
        before = std::move(after);
        // Each registration has a time of its own.
        clock.AdvanceSeconds(1);
      });
  EXPECT_THAT(Register(), SameResult(kSuccess));
}

TEST_F(Registration, WaitsForARunningSearch) {
  std::shared_lock search_lock(CKelSLPImpl::CoreLock());
  std::future<SResult> registration = std::async(std::launch::async, [&] { return Register(); });
  // Long enough for a registration that doesn't wait to have registered.
  EXPECT_EQ(registration.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_EQ(Registrations(), 0U);
  search_lock.unlock();
  EXPECT_THAT(registration.get(), SameResult(kSuccess));
}

// The configuration file check.

TEST_F(Registration, InitialisesAgainOnceWhenTheVariableIsNewToTheSlpLibrary) {
  scripted_slp::RemoveProperty("net.slp.EnvConfigFile");
  Next(Function::kOpen, scripted_slp::Runs([this] { UseConfigFile(folder.Path("slp.conf")); }));
  EXPECT_THAT(Register(), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4",
                          "SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPOpen(en,0)=#5",
                          "SLPReg(#5,service:x://10.0.0.1:80,60,null,,1)", "SLPClose(#5)"));
}

TEST_F(Registration, FailsWhenTheSlpLibraryStillUsesAnotherFile) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  EXPECT_THAT(Register(),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, "",
                                 kName + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile")));
  EXPECT_THAT(scripted_slp::Calls("SLPOpen"), SizeIs(2));
}

TEST_F(Registration, TellsOfBothWhenTheInitialisationFails) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, Returns(SLP_MEMORY_ALLOC_FAILED));
  EXPECT_THAT(Register(),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: ",
                                 kName + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile "
                                         "kelsd::CKelSLPImpl::ReInitializeInternal "
                                         "kelsd::CKelSLPImpl::InitializeInternal "
                                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(Registration, AnExceptionOfTheInitialisationIsTheWholeResult) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(Register(), SameResult(SResult(SResult::ERR_BASIC_API, "broken", kName + " ")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(Registration, ReportsOtherProblemsOfTheFileAsTheyAre) {
  ClearEnvironment("OpenSLPConfig");
  EXPECT_THAT(Register(),
              SameResult(SResult(SResult::ERR_ENV_NOT_SET,
                                 "Create an environment variable with name 'OpenSLPConfig' that contains the "
                                 "path to the SLP configuration file e.g. '" +
                                     agent.GetDefaultEnvConfigFileName() + "'.",
                                 kName + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile "
                                         "kelsd::CKelSLPServiceImpl::GetSLPEnvConfigFileName")));
  EXPECT_THAT(scripted_slp::Calls("SLPOpen"), IsEmpty());
}

// Registering again.

class ReRegistration : public ServiceFixture {
 protected:
  SResult ReRegister(const std::vector<std::string>& scopes = {}) {
    return agent.ReRegisterService(kUrl, 60, {{"x-a", "1"}}, scopes);
  }
  const std::string name_ = "kelsd::CKelSLPServiceImpl::ReRegisterService";
};

TEST_F(ReRegistration, AdmitsNoScopesAndKeepsNothing) {
  EXPECT_THAT(ReRegister({"tamro"}), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPEscape(1,0)", "SLPClose(#2)",
                          "SLPOpen(en,0)=#3", "SLPReg(#3,service:x://10.0.0.1:80,60,null,(x-a=1),1)",
                          "SLPClose(#3)", "SLPOpen(en,0)=#4", "SLPClose(#4)", "SLPOpen(en,0)=#5"));
  EXPECT_EQ(folder.Read("slp.conf"), "");
  EXPECT_EQ(services.CountCalls("StartService") + services.CountCalls("ControlService"), 0U);
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  EXPECT_THAT(timers.Periods(), IsEmpty());
}

TEST_F(ReRegistration, WithoutScopesLeavesTheResidentHandle) {
  EXPECT_THAT(ReRegister(), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPParseSrvURL(service:x://10.0.0.1:80)", "SLPEscape(1,0)", "SLPOpen(en,0)=#3",
                          "SLPReg(#3,service:x://10.0.0.1:80,60,null,(x-a=1),1)", "SLPClose(#3)"));
}

TEST_F(ReRegistration, NamesItselfInEveryFailure) {
  Next(Function::kReg, Returns(SLP_NETWORK_ERROR));
  EXPECT_THAT(ReRegister(), SameResult(SResult(SResult::ERR_NETWORK_ERROR, "", name_ + " SLPReg")));
  Next(Function::kReg, Delivers({Code(SLP_AUTHENTICATION_ABSENT)}));
  EXPECT_THAT(ReRegister(),
              SameResult(SResult(SResult::ERR_AUTHENTICATION_ABSENT, "", name_ + " SLPReg callback")));
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(ReRegister(),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: ",
                                 name_ + " kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile "
                                         "kelsd::CKelSLPImpl::ReInitializeInternal "
                                         "kelsd::CKelSLPImpl::InitializeInternal "
                                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_THAT(ReRegister(), SameResult(SResult(SResult::ERR_NOT_INITIALIZED, "", name_)));
}

}  // namespace
}  // namespace kelsd
