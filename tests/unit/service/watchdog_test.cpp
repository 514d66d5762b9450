#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "service_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kReRegister = "kelsd::CKelSLPServiceImpl::ReRegisterService";

class Watchdog : public ServiceFixture {
 protected:
  Watchdog() {
    agent.SetReRegistrationFailedCallback([this](const std::string& url, const SResult& result) {
      const std::lock_guard lock(mutex_);
      reports_.emplace_back(url, result);
      threads_.push_back(std::this_thread::get_id());
    });
  }

  /// The daemon refuses this service from now on.
  void Refuse(const std::string& url) {
    refused_.insert("," + url + ",");
    scripted_slp::Decide(Function::kReg, [this](const std::string& call) {
      const bool refused = std::any_of(refused_.begin(), refused_.end(), [&](const std::string& argument) {
        return call.find(argument) != std::string::npos;
      });
      return refused ? std::optional(Returns(SLP_PARSE_ERROR)) : std::nullopt;
    });
  }

  /// Ticks at which everything is due, `times` of them.
  void DueTicks(int times) {
    for (int i = 0; i < times; ++i) {
      clock.AdvanceSeconds(100);
      timers.Tick();
    }
  }

  std::set<std::string> refused_;
  std::mutex mutex_;
  std::vector<std::pair<std::string, SResult>> reports_;
  std::vector<std::thread::id> threads_;
};

auto Report(const std::string& url, const SResult& result) {
  return testing::Pair(url, SameResult(result));
}

TEST_F(Watchdog, RenewsShortlyBeforeTheEndOfTheLifetime) {
  Registered(kUrl, 30);
  clock.AdvanceSeconds(24);
  timers.Tick();
  EXPECT_EQ(Registrations(), 0U);
  clock.AdvanceSeconds(1);
  timers.Tick();
  EXPECT_THAT(scripted_slp::Calls("SLPReg"), ElementsAre("SLPReg(#4,service:x://10.0.0.1:80,30,null,,1)"));
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).LastRegistration, FakeClock::kStart + 25);
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(Watchdog, RenewsWithEverythingThatWasGiven) {
  EXPECT_THAT(agent.RegisterService(kUrl, 30, {{"x-a", "1"}}, {"Default"}), SameResult(kSuccess));
  scripted_slp::ForgetCalls();
  DueTicks(1);
  EXPECT_THAT(scripted_slp::Calls("SLPReg"),
              ElementsAre("SLPReg(#6,service:x://10.0.0.1:80,30,null,(x-a=1),1)"));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty(net.slp.useScopes"),
              ElementsAre("SLPSetProperty(net.slp.useScopes,Default)"));
}

TEST_F(Watchdog, RenewsInTheOrderOfUrlsAndOnlyWhatIsDue) {
  Registered("service:x://c", 30);
  Registered("service:x://a", 30);
  Registered("service:x://b", 300);
  clock.AdvanceSeconds(100);
  timers.Tick();
  EXPECT_THAT(scripted_slp::Calls("SLPReg"),
              ElementsAre(testing::HasSubstr("service:x://a"), testing::HasSubstr("service:x://c")));
}

TEST_F(Watchdog, RenewsEverythingWithinOnePeriodOfARestartByAnotherProgram) {
  Registered("service:x://a");
  Registered("service:x://b");
  clock.AdvanceSeconds(1);
  services.RestartBehindTheBack();
  timers.Tick();
  EXPECT_EQ(Registrations(), 2U);
  clock.AdvanceSeconds(1);
  timers.Tick();
  timers.Tick();
  // The first of them: both clocks are truncated, so once more to be sure.
  EXPECT_EQ(Registrations(), 4U);
}

TEST_F(Watchdog, RenewsWhenTheDaemonWasRestartedWithinTheSecondOfTheRegistration) {
  Registered();
  services.RestartBehindTheBack();
  clock.AdvanceSeconds(1);
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(Watchdog, RenewsEverythingWhileTheDaemonDoesNotRunWhichStartsIt) {
  Registered("service:x://a");
  Registered("service:x://b");
  services.SetState(platform::kServiceStopped);
  clock.AdvanceSeconds(1);
  timers.Tick();
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
  // The forced pass of the start does nothing within this pass.
  EXPECT_EQ(Registrations(), 2U);
}

TEST_F(Watchdog, TakesADaemonThatCannotBeAskedForJustStarted) {
  Registered();
  clock.AdvanceSeconds(1);
  services.Fail(ServiceCall::kCreationTime);
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(Watchdog, AHugeIntervalRenewsEveryServiceOnEveryPass) {
  EXPECT_THAT(agent.SetRegistrationCheckInterval(715827883), SameResult(kSuccess));
  Registered(kUrl, 65535);
  EXPECT_THAT(timers.Periods(), ElementsAre(715827883U));
  for (std::size_t i = 1; i <= 3; ++i) {
    clock.AdvanceSeconds(1);
    timers.Tick();
    EXPECT_EQ(Registrations(), i);
  }
}

TEST_F(Watchdog, AShortIntervalRenewsTwoSecondsBeforeTheEnd) {
  EXPECT_THAT(agent.SetRegistrationCheckInterval(100), SameResult(kSuccess));
  Registered(kUrl, 12);
  clock.AdvanceSeconds(10);
  timers.Tick();
  EXPECT_EQ(Registrations(), 0U);
  clock.AdvanceSeconds(1);
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
}

// Failures.

TEST_F(Watchdog, FourFailuresAndASuccessLeadToNoReport) {
  Registered();
  for (int i = 0; i < 4; ++i) {
    Next(Function::kReg, Returns(SLP_NETWORK_ERROR));
  }
  DueTicks(4);
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).FailedReRegistrations, 4U);
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).LastRegistration, FakeClock::kStart);
  DueTicks(1);
  EXPECT_THAT(agent.GetRegisteredServices(),
              ElementsAre(std::pair(kUrl, SRegisteredService{kUrl, 60, {}, {}, FakeClock::kStart + 500, 0})));
  EXPECT_THAT(reports_, IsEmpty());
}

TEST_F(Watchdog, FiveFailuresInARowDropTheServiceWithOneReportOfTheLast) {
  Registered();
  for (int i = 0; i < 4; ++i) {
    Next(Function::kReg, Returns(SLP_NETWORK_ERROR));
  }
  Next(Function::kReg, scripted_slp::Delivers({scripted_slp::Code(SLP_INVALID_REGISTRATION)}));
  DueTicks(4);
  EXPECT_THAT(reports_, IsEmpty());
  DueTicks(1);
  const SResult last(SResult::ERR_INVALID_REGISTRATION, "", kReRegister + " SLPReg callback");
  EXPECT_THAT(reports_, ElementsAre(Report(kUrl, last)));
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  // The timer goes on.
  EXPECT_EQ(timers.Live(), 1U);
  DueTicks(3);
  EXPECT_THAT(reports_, testing::SizeIs(1));
}

TEST_F(Watchdog, ReportsTheWholeTrail) {
  Registered();
  services.SetState(platform::kServiceStopped);
  services.Fail(ServiceCall::kStart, 5);
  DueTicks(5);
  EXPECT_THAT(
      reports_,
      ElementsAre(Report(kUrl, SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                       kReRegister + " kelsd::CKelSLPServiceImpl::EnsureSLPDIsRunning "
                                                     "kelsd::CKelSLPServiceImpl::StartSLPD StartService"))));
}

TEST_F(Watchdog, ReportsSeveralInTheOrderOfUrls) {
  Registered("service:x://b");
  Registered("service:x://a");
  Registered("service:x://c");
  scripted_slp::Decide(Function::kReg, [](const std::string& call) -> std::optional<scripted_slp::Reply> {
    return call.find("://b") == std::string::npos ? std::optional(Returns(SLP_PARSE_ERROR)) : std::nullopt;
  });
  DueTicks(5);
  const SResult failure(SResult::ERR_PARSE_ERROR, "", kReRegister + " SLPReg");
  EXPECT_THAT(reports_, ElementsAre(Report("service:x://a", failure), Report("service:x://c", failure)));
  EXPECT_THAT(RegisteredUrls(), ElementsAre("service:x://b"));
}

TEST_F(Watchdog, DropsWithoutACallback) {
  agent.SetReRegistrationFailedCallback(nullptr);
  Registered();
  scripted_slp::Always(Function::kReg, Returns(SLP_PARSE_ERROR));
  DueTicks(5);
  EXPECT_THAT(RegisteredUrls(), IsEmpty());
  EXPECT_THAT(reports_, IsEmpty());
}

TEST_F(Watchdog, SwallowsWhatACallbackThrowsAndReportsTheOthers) {
  int calls = 0;
  agent.SetReRegistrationFailedCallback([&](const std::string&, const SResult&) {
    if (++calls == 1) {
      throw std::runtime_error("the application's");
    }
    throw 1;
  });
  Registered("service:x://a");
  Registered("service:x://b");
  scripted_slp::Always(Function::kReg, Returns(SLP_PARSE_ERROR));
  DueTicks(5);
  EXPECT_EQ(calls, 2);
  DueTicks(1);
  EXPECT_EQ(timers.Live(), 1U);
}

TEST_F(Watchdog, CountsAnExceptionAsAFailure) {
  Registered();
  services.SetState(platform::kServiceStopped);
  services.OnStart([] { throw std::runtime_error("broken"); });
  DueTicks(1);
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).FailedReRegistrations, 1U);
  services.OnStart(nullptr);
  DueTicks(1);
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).FailedReRegistrations, 0U);
}

TEST_F(Watchdog, ATickSurvivesAnExceptionOfNoKnownKind) {
  Registered();
  Next(Function::kReg, scripted_slp::Runs([] { throw 1; }));
  EXPECT_NO_THROW(DueTicks(1));
  EXPECT_EQ(Registrations(), 1U);
  EXPECT_EQ(scripted_slp::OpenHandles(), 1);
  EXPECT_EQ(services.OpenHandles(), 0);
  // Neither in a pass nor busy nor locked: another thread's tick and registration get through.
  std::async(std::launch::async, [&] {
    DueTicks(1);
    EXPECT_EQ(Registrations(), 2U);
    EXPECT_THAT(Register("service:x://other"), SameResult(kSuccess));
  }).get();
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).LastRegistration, FakeClock::kStart + 200);
}

TEST_F(Watchdog, InitialisesACoreThatIsNotInsteadOfCountingFailures) {
  Registered("service:x://a");
  Registered("service:x://b");
  CKelSLPImpl::Shutdown();
  DueTicks(1);
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(Registrations(), 2U);
}

TEST_F(Watchdog, CountsAFailureWhenTheCoreCannotBeInitialised) {
  Registered();
  CKelSLPImpl::Shutdown();
  scripted_slp::Always(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  DueTicks(5);
  EXPECT_THAT(reports_, ElementsAre(Report(kUrl, SResult(SResult::ERR_NOT_INITIALIZED, "", kReRegister))));
}

TEST_F(Watchdog, AnInitialisedCoreIsLeftAlone) {
  Registered(kUrl, 600);
  timers.Tick();
  EXPECT_THAT(scripted_slp::CallsButProperties(), IsEmpty());
}

// Passes that are left out.

TEST_F(Watchdog, APassIsLeftOutWhileAnotherThreadHoldsTheLock) {
  Registered();
  clock.AdvanceSeconds(100);
  services.SetState(platform::kServiceStopped);
  services.UpcomingAfterStart(
      {{.current_state = platform::kServiceStartPending}, {.current_state = platform::kServiceRunning}});
  std::size_t during = 99;
  clock.OnSleep([&] {
    std::async(std::launch::async, [&] { timers.Tick(); }).get();
    during = Registrations();
  });
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_EQ(during, 0U);
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(Watchdog, APassIsLeftOutWhileARegistrationIsUnderWay) {
  Registered();
  clock.AdvanceSeconds(100);
  std::size_t registrations = 0;
  Next(Function::kReg, scripted_slp::Runs([&] {
         // On the same thread the lock alone would let it in.
         timers.Tick();
         agent.CheckRegistrations(true);
         registrations = Registrations();
       }));
  EXPECT_THAT(Register("service:x://other"), SameResult(kSuccess));
  EXPECT_EQ(registrations, 1U);
}

TEST_F(Watchdog, ATickDuringAPassRenewsNothing) {
  Registered();
  clock.AdvanceSeconds(100);
  Next(Function::kReg,
       scripted_slp::Runs([&] { std::async(std::launch::async, [&] { timers.Tick(); }).get(); }));
  timers.Tick();
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(Watchdog, TheForcedPassRenewsWhatIsNotDue) {
  Registered();
  agent.CheckRegistrations(true);
  EXPECT_EQ(Registrations(), 1U);
  EXPECT_EQ(services.CountCalls("OpenProcess"), 0U);
}

// Interval and timer.

TEST_F(Watchdog, RefusesIntervalsBelowOne) {
  Registered();
  for (const int interval : {0, -5, -2147483647 - 1}) {
    EXPECT_THAT(agent.SetRegistrationCheckInterval(interval),
                SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                                   "Service registration check interval must be greater than zero (" +
                                       std::to_string(interval) + ").",
                                   "kelsd::CKelSLPServiceImpl::SetRegistrationCheckInterval")));
  }
  EXPECT_THAT(timers.Periods(), ElementsAre(2000U));
}

TEST_F(Watchdog, ANewIntervalReplacesARunningTimer) {
  EXPECT_THAT(agent.SetRegistrationCheckInterval(500), SameResult(kSuccess));
  EXPECT_THAT(timers.Periods(), IsEmpty());
  Registered();
  EXPECT_THAT(agent.SetRegistrationCheckInterval(1), SameResult(kSuccess));
  EXPECT_THAT(agent.SetRegistrationCheckInterval(1), SameResult(kSuccess));
  EXPECT_THAT(timers.Periods(), ElementsAre(500U, 1U));
  EXPECT_EQ(timers.Live(), 1U);
}

TEST_F(Watchdog, TheDefaultIntervalIsNoChange) {
  Registered();
  EXPECT_THAT(agent.SetRegistrationCheckInterval(2000), SameResult(kSuccess));
  EXPECT_THAT(timers.Periods(), ElementsAre(2000U));
}

TEST_F(Watchdog, WithoutATimerTheNextRegistrationTriesAgain) {
  timers.SetFails(true);
  Registered();
  EXPECT_EQ(timers.Live(), 0U);
  EXPECT_THAT(RegisteredUrls(), ElementsAre(kUrl));
  timers.SetFails(false);
  Registered();
  EXPECT_EQ(timers.Live(), 1U);
  timers.SetFails(true);
  EXPECT_THAT(agent.SetRegistrationCheckInterval(3), SameResult(kSuccess));
  EXPECT_EQ(timers.Live(), 0U);
  EXPECT_THAT(timers.Periods(), ElementsAre(2000U, 2000U, 3U));
}

TEST_F(Watchdog, WithoutMemoryForATimerTheNextRegistrationTriesAgain) {
  timers.SetOutOfMemory(true);
  Registered();
  EXPECT_EQ(timers.Live(), 0U);
  EXPECT_THAT(RegisteredUrls(), ElementsAre(kUrl));
  timers.SetOutOfMemory(false);
  Registered();
  EXPECT_EQ(timers.Live(), 1U);
  timers.SetOutOfMemory(true);
  EXPECT_THAT(agent.SetRegistrationCheckInterval(3), SameResult(kSuccess));
  EXPECT_EQ(timers.Live(), 0U);
  EXPECT_THAT(timers.Periods(), ElementsAre(2000U, 2000U, 3U));
}

// The callback, and what it may do.

TEST_F(Watchdog, TheForcedPassOfAStartReportsOnItsThreadBeforeItReturns) {
  Registered();
  scripted_slp::Always(Function::kReg, Returns(SLP_PARSE_ERROR));
  DueTicks(4);
  EXPECT_THAT(agent.RestartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(reports_,
              ElementsAre(Report(kUrl, SResult(SResult::ERR_PARSE_ERROR, "", kReRegister + " SLPReg"))));
  EXPECT_THAT(threads_, ElementsAre(std::this_thread::get_id()));
}

TEST_F(Watchdog, AReportOfATickComesWithoutAnyLockHeld) {
  SResult deregistered;
  SResult initialized;
  std::size_t registrations = 0;
  agent.SetReRegistrationFailedCallback([&](const std::string&, const SResult&) {
    // A thread that needs the locks and the pass guard gets them while this waits.
    std::async(std::launch::async, [&] {
      deregistered = agent.DeregisterService("service:x://other");
      initialized = CKelSLPImpl::ReInitialize(false);
      EXPECT_THAT(Register("service:x://third"), SameResult(kSuccess));
      scripted_slp::ForgetCalls();
      DueTicks(1);
      registrations = Registrations();
    }).get();
  });
  Registered();
  Registered("service:x://other");
  Refuse(kUrl);
  DueTicks(5);
  EXPECT_THAT(deregistered, SameResult(kSuccess));
  EXPECT_THAT(initialized, SameResult(kSuccess));
  EXPECT_EQ(registrations, 1U);
}

TEST_F(Watchdog, AReportOfAStartComesWithoutAnyLockHeld) {
  SResult deregistered;
  SResult initialized;
  agent.SetReRegistrationFailedCallback([&](const std::string&, const SResult&) {
    std::async(std::launch::async, [&] {
      deregistered = agent.DeregisterService("service:x://other");
      initialized = CKelSLPImpl::ReInitialize(false);
    }).get();
  });
  Registered();
  Registered("service:x://other");
  Refuse(kUrl);
  DueTicks(4);
  EXPECT_THAT(agent.RestartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(deregistered, SameResult(kSuccess));
  EXPECT_THAT(initialized, SameResult(kSuccess));
}

TEST_F(Watchdog, ACallbackMayRegisterDeregisterAndChangeTheInterval) {
  std::vector<SResult> results;
  agent.SetReRegistrationFailedCallback([&](const std::string& url, const SResult&) {
    results.push_back(Register(url + "/again"));
    results.push_back(agent.SetRegistrationCheckInterval(77));
    results.push_back(agent.DeregisterService(url + "/again"));
    results.push_back(agent.StopSLPD());
    results.push_back(agent.StartSLPD());
    results.push_back(agent.DeregisterService(url));
  });
  Registered();
  for (int i = 0; i < 5; ++i) {
    Next(Function::kReg, Returns(SLP_PARSE_ERROR));
  }
  DueTicks(5);
  EXPECT_THAT(results, testing::AllOf(testing::SizeIs(6), testing::Each(SameResult(kSuccess))));
  EXPECT_THAT(timers.Periods(), ElementsAre(2000U, 77U));
  EXPECT_EQ(timers.Live(), 0U);
}

TEST_F(Watchdog, ReportsComeOneAtATimeInOrder) {
  std::vector<std::string> events;
  agent.SetReRegistrationFailedCallback([&](const std::string& url, const SResult&) {
    events.push_back("begin " + url);
    if (url == "service:x://a") {
      // The pass of this start drops the other one, whose report waits for this one to end.
      EXPECT_THAT(agent.RestartSLPD(), SameResult(kSuccess));
      EXPECT_THAT(RegisteredUrls(), IsEmpty());
    }
    events.push_back("end " + url);
  });
  Registered("service:x://a");
  Refuse("service:x://a");
  DueTicks(1);
  Registered("service:x://b");
  Refuse("service:x://b");
  DueTicks(4);
  EXPECT_THAT(events, ElementsAre("begin service:x://a", "end service:x://a", "begin service:x://b",
                                  "end service:x://b"));
}

}  // namespace
}  // namespace kelsd
