#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <vector>

#include "service_fixture.h"
#include "support/allocation_failure.h"

namespace kelsd {
namespace {

using platform::kServiceRunning;
using platform::kServiceStartPending;
using platform::kServiceStopped;
using platform::kServiceStopPending;
using platform::ServiceStatus;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr platform::ServiceState kPaused = static_cast<platform::ServiceState>(7);

class SlpdControl : public ServiceFixture {
 protected:
  SResult IsRunning() {
    bool running = false;
    return agent.IsSLPDRunning(running);
  }
};

// The calls, their rights and their order.

TEST_F(SlpdControl, AsksWhetherTheDaemonRuns) {
  bool running = false;
  EXPECT_THAT(agent.IsSLPDRunning(running), SameResult(kSuccess));
  EXPECT_TRUE(running);
  EXPECT_THAT(services.Calls(), ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x4)", "Query=4",
                                            "CloseService", "CloseManager"));
}

TEST_F(SlpdControl, OnlyTheRunningStateIsRunning) {
  for (const auto state : {kServiceStopped, kServiceStartPending, kServiceStopPending, kPaused}) {
    services.SetState(state);
    bool running = true;
    EXPECT_THAT(agent.IsSLPDRunning(running), SameResult(kSuccess));
    EXPECT_FALSE(running) << state;
  }
}

TEST_F(SlpdControl, Starts) {
  services.SetState(kServiceStopped);
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(),
              ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x14)", "Query=1", "Query=1",
                          "StartService", "Query=4", "CloseService", "CloseManager"));
  EXPECT_THAT(clock.Sleeps(), IsEmpty());
}

TEST_F(SlpdControl, Stops) {
  EXPECT_THAT(agent.StopSLPD(), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(),
              ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x24)", "Query=4", "Query=4",
                          "ControlService", "Query=1", "Query=1", "CloseService", "CloseManager"));
}

TEST_F(SlpdControl, RestartsByStoppingAndStarting) {
  EXPECT_THAT(agent.RestartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(),
              ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x24)", "Query=4", "Query=4",
                          "ControlService", "Query=1", "Query=1", "CloseService", "CloseManager",
                          "OpenSCManager(0x20000)", "OpenService(slpd,0x14)", "Query=1", "Query=1",
                          "StartService", "Query=4", "CloseService", "CloseManager"));
}

TEST_F(SlpdControl, RestartingAStoppedDaemonStartsIt) {
  services.SetState(kServiceStopped);
  EXPECT_THAT(agent.RestartSLPD(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("ControlService"), 0U);
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
}

TEST_F(SlpdControl, StartsNothingThatRunsOrIsStarting) {
  for (const auto state : {kServiceRunning, kServiceStartPending, kPaused}) {
    services.SetState(state);
    EXPECT_THAT(agent.StartSLPD(),
                SameResult(SResult(SResult::ERR_SLPD_ALREADY_RUNNING, "", kAgentName + "StartSLPD ")));
  }
  EXPECT_EQ(services.CountCalls("StartService"), 0U);
}

TEST_F(SlpdControl, WaitsForAStopThatIsUnderWayBeforeItStarts) {
  services.Upcoming({{.current_state = kServiceStopPending, .wait_hint = 20000},
                     {.current_state = kServiceStopPending, .wait_hint = 20000},
                     {.current_state = kServiceStopPending, .wait_hint = 20000},
                     {.current_state = kServiceStopped}});
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(),
              ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x14)", "Query=3", "Query=3", "Query=3",
                          "Query=1", "StartService", "Query=4", "CloseService", "CloseManager"));
  EXPECT_THAT(clock.Sleeps(), ElementsAre(2000U, 2000U));
}

TEST_F(SlpdControl, StartsNothingWhileAStopThatIsUnderWayDoesNotEnd) {
  services.Upcoming({{.current_state = kServiceStopPending}});
  EXPECT_THAT(agent.StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_WAIT_TIMEOUT, "",
                                 kAgentName + "StartSLPD " + kAgentName + "WaitForServiceStatusChange")));
  EXPECT_THAT(services.Calls(), ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x14)", "Query=3",
                                            "Query=3", "Query=3", "Query=3", "CloseService", "CloseManager"));
}

TEST_F(SlpdControl, StoppingAStoppedDaemonIsASuccess) {
  services.SetState(kServiceStopped);
  EXPECT_THAT(agent.StopSLPD(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("ControlService"), 0U);
}

TEST_F(SlpdControl, WaitsForAStopThatIsUnderWay) {
  services.Upcoming({{.current_state = kServiceStopPending, .wait_hint = 100},
                     {.current_state = kServiceStopPending, .wait_hint = 100},
                     {.current_state = kServiceStopped}});
  EXPECT_THAT(agent.StopSLPD(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("ControlService"), 0U);
  EXPECT_THAT(clock.Sleeps(), ElementsAre(1000U));
}

// Waiting.

TEST_F(SlpdControl, PausesForATenthOfTheHintWithinLimits) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStartPending, .check_point = 1, .wait_hint = 9999},
                               {.current_state = kServiceStartPending, .check_point = 2, .wait_hint = 10019},
                               {.current_state = kServiceStartPending, .check_point = 3, .wait_hint = 49990},
                               {.current_state = kServiceStartPending, .check_point = 4, .wait_hint = 50010},
                               {.current_state = kServiceRunning}});
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(clock.Sleeps(), ElementsAre(1000U, 1001U, 4999U, 5000U));
}

TEST_F(SlpdControl, TimesOutALittleAfterASecondWithoutHintAndProgress) {
  services.Upcoming({{.current_state = kServiceStopPending}});
  EXPECT_THAT(
      agent.StopSLPD(),
      SameResult(SResult(SResult::ERR_SLPD_WAIT_TIMEOUT, "",
                         kAgentName + "StopSLPD kelsd::CKelSLPServiceImpl::WaitForServiceStatusChange")));
  // The first thousand milliseconds are not more than a thousand.
  EXPECT_THAT(clock.Sleeps(), ElementsAre(1000U, 1000U));
}

TEST_F(SlpdControl, TimesOutAfterTheHintOfTheLastQuery) {
  services.Upcoming({{.current_state = kServiceStopPending, .wait_hint = 30000},
                     {.current_state = kServiceStopPending, .wait_hint = 30000},
                     {.current_state = kServiceStopPending, .wait_hint = 3500}});
  EXPECT_THAT(agent.StopSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_WAIT_TIMEOUT, "",
                                 kAgentName + "StopSLPD " + kAgentName + "WaitForServiceStatusChange")));
  EXPECT_THAT(clock.Sleeps(), ElementsAre(3000U, 1000U));
}

TEST_F(SlpdControl, MeasuresTheTimeFromTheLastProgress) {
  std::vector<ServiceStatus> statuses;
  for (std::uint32_t i = 0; i < 12; ++i) {
    statuses.push_back({.current_state = kServiceStartPending, .check_point = i / 3, .wait_hint = 2500});
  }
  statuses.push_back({.current_state = kServiceRunning});
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart(statuses);
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(clock.Sleeps(), testing::SizeIs(12));
}

TEST_F(SlpdControl, AStateReachedAtTheLastMomentIsNoTimeOut) {
  services.Upcoming({{.current_state = kServiceStopPending},
                     {.current_state = kServiceStopPending},
                     {.current_state = kServiceStopPending},
                     {.current_state = kServiceStopped}});
  EXPECT_THAT(agent.StopSLPD(), SameResult(kSuccess));
}

TEST_F(SlpdControl, AStartThatTimesOutButRunsAtTheLastQueryCounts) {
  Registered();
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStartPending},
                               {.current_state = kServiceStartPending},
                               {.current_state = kServiceStartPending},
                               {.current_state = kServiceRunning}});
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(clock.Sleeps(), ElementsAre(1000U, 1000U));
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(SlpdControl, AStartThatTimesOutAndIsStillPendingDidNotStart) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart(
      {{.current_state = kServiceStartPending, .exit_code = 5, .check_point = 6, .wait_hint = 900}});
  EXPECT_THAT(agent.StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START,
                                 "Service did not start up. Current State: 2. Exit Code: 5. Check Point: 6. "
                                 "Wait Hint: 900.",
                                 kAgentName + "StartSLPD ")));
}

TEST_F(SlpdControl, AStartThatEndsStoppedDidNotStart) {
  Registered();
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStopped, .exit_code = 4294967295U}});
  EXPECT_THAT(agent.StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START,
                                 "Service did not start up. Current State: 1. Exit Code: 4294967295. Check "
                                 "Point: 0. Wait Hint: 0.",
                                 kAgentName + "StartSLPD ")));
  EXPECT_EQ(Registrations(), 0U);
}

TEST_F(SlpdControl, AStopThatEndsInAnotherStateFailed) {
  services.UpcomingAfterStop({{.current_state = kServiceRunning}});
  EXPECT_THAT(agent.StopSLPD(), SameResult(SResult(SResult::ERR_SLPD_STOP, "", kAgentName + "StopSLPD ")));
}

TEST_F(SlpdControl, AStopThatTimesOutFails) {
  services.UpcomingAfterStop({{.current_state = kServiceStopPending, .wait_hint = 1}});
  EXPECT_THAT(agent.RestartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_WAIT_TIMEOUT, "",
                                 kAgentName + "RestartSLPD kelsd::CKelSLPServiceImpl::StopSLPD "
                                              "kelsd::CKelSLPServiceImpl::WaitForServiceStatusChange")));
  EXPECT_EQ(services.CountCalls("StartService"), 0U);
}

TEST_F(SlpdControl, APauseNeverTakesTheTickCountsWrapForATimeOut) {
  // The tick count of the fake clock wraps round after a second and a half.
  services.Upcoming({{.current_state = kServiceStopPending, .wait_hint = 10000},
                     {.current_state = kServiceStopPending, .wait_hint = 10000},
                     {.current_state = kServiceStopPending, .wait_hint = 10000},
                     {.current_state = kServiceStopPending, .wait_hint = 10000},
                     {.current_state = kServiceStopped}});
  EXPECT_THAT(agent.StopSLPD(), SameResult(kSuccess));
}

// Failing calls.

struct FailingCall {
  ServiceCall call;
  int after;
  SResult result;
};

TEST_F(SlpdControl, ReportsEveryFailingCallOfAStart) {
  const std::string name = kAgentName + "StartSLPD ";
  const std::string query = kAgentName + "GetServiceStatus QueryServiceStatusEx";
  const std::string wait = kAgentName + "WaitForServiceStatusChange ";
  const std::vector<FailingCall> rows{
      {ServiceCall::kOpenManager,
       0,
       {SResult::ERR_SCM_ACCESS, "Refused: OpenSCManager.",
        name + kAgentName + "OpenServiceHandles OpenSCManager"}},
      {ServiceCall::kOpenService,
       0,
       {SResult::ERR_SLPD_OPEN, "Refused: OpenService.",
        name + kAgentName + "OpenServiceHandles OpenService"}},
      {ServiceCall::kQuery, 0, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + query}},
      {ServiceCall::kQuery, 1, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + wait + query}},
      {ServiceCall::kQuery, 2, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + wait + query}},
      {ServiceCall::kQuery, 3, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + wait + query}},
      {ServiceCall::kStart, 0, {SResult::ERR_SLPD_START, "Refused: StartService.", name + "StartService"}},
  };
  for (const FailingCall& row : rows) {
    services.SetState(kServiceStopped);
    services.UpcomingAfterStart(
        {{.current_state = kServiceStartPending}, {.current_state = kServiceRunning}});
    services.Fail(row.call, 1, row.after);
    EXPECT_THAT(agent.StartSLPD(), SameResult(row.result));
    EXPECT_EQ(services.OpenHandles(), 0);
    services.Upcoming({});
  }
}

TEST_F(SlpdControl, ReportsAFailingQueryAfterATimeOutOfAStart) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStartPending}});
  services.Fail(ServiceCall::kQuery, 1, 5);
  EXPECT_THAT(agent.StartSLPD(), SameResult(SResult(SResult::ERR_SLPD_QUERY, "Refused: Query.",
                                                    kAgentName + "StartSLPD " + kAgentName +
                                                        "GetServiceStatus QueryServiceStatusEx")));
}

TEST_F(SlpdControl, ReportsEveryFailingCallOfAStop) {
  const std::string name = kAgentName + "StopSLPD ";
  const std::string query = kAgentName + "GetServiceStatus QueryServiceStatusEx";
  const std::string wait = kAgentName + "WaitForServiceStatusChange ";
  const std::vector<FailingCall> rows{
      {ServiceCall::kOpenManager,
       0,
       {SResult::ERR_SCM_ACCESS, "Refused: OpenSCManager.",
        name + kAgentName + "OpenServiceHandles OpenSCManager"}},
      {ServiceCall::kOpenService,
       0,
       {SResult::ERR_SLPD_OPEN, "Refused: OpenService.",
        name + kAgentName + "OpenServiceHandles OpenService"}},
      {ServiceCall::kQuery, 0, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + query}},
      {ServiceCall::kQuery, 1, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + wait + query}},
      {ServiceCall::kQuery, 2, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + wait + query}},
      {ServiceCall::kQuery, 3, {SResult::ERR_SLPD_QUERY, "Refused: Query.", name + query}},
      {ServiceCall::kStop, 0, {SResult::ERR_SLPD_STOP, "Refused: ControlService.", name + "ControlService"}},
  };
  for (const FailingCall& row : rows) {
    services.SetState(kServiceRunning);
    services.Fail(row.call, 1, row.after);
    EXPECT_THAT(agent.StopSLPD(), SameResult(row.result));
    EXPECT_EQ(services.OpenHandles(), 0);
  }
}

TEST_F(SlpdControl, ReportsFailingCallsOfAQuestionAndLeavesTheAnswerAlone) {
  const std::vector<FailingCall> rows{
      {ServiceCall::kOpenManager,
       0,
       {SResult::ERR_SCM_ACCESS, "Refused: OpenSCManager.",
        kAgentName + "IsSLPDRunning " + kAgentName + "OpenServiceHandles OpenSCManager"}},
      {ServiceCall::kOpenService,
       0,
       {SResult::ERR_SLPD_OPEN, "Refused: OpenService.",
        kAgentName + "IsSLPDRunning " + kAgentName + "OpenServiceHandles OpenService"}},
      {ServiceCall::kQuery,
       0,
       {SResult::ERR_SLPD_QUERY, "Refused: Query.",
        kAgentName + "IsSLPDRunning " + kAgentName + "GetServiceStatus QueryServiceStatusEx"}},
  };
  for (const FailingCall& row : rows) {
    for (const bool before : {true, false}) {
      bool running = before;
      services.Fail(row.call);
      EXPECT_THAT(agent.IsSLPDRunning(running), SameResult(row.result));
      EXPECT_EQ(running, before);
    }
  }
}

TEST_F(SlpdControl, ARestartNamesItselfInEveryFailure) {
  services.Fail(ServiceCall::kStop);
  EXPECT_THAT(agent.RestartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_STOP, "Refused: ControlService.",
                                 kAgentName + "RestartSLPD " + kAgentName + "StopSLPD ControlService")));
  services.Fail(ServiceCall::kStart);
  EXPECT_THAT(agent.RestartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                 kAgentName + "RestartSLPD " + kAgentName + "StartSLPD StartService")));
}

TEST_F(SlpdControl, TurnsExceptionsIntoResultsAndUndoesEverything) {
  struct Row {
    SResult (CKelSLPServiceImpl::*operation)();
    std::string trail;
  };
  const std::vector<Row> rows{
      {&CKelSLPServiceImpl::StartSLPD, "StartSLPD "},
      {&CKelSLPServiceImpl::StopSLPD, "StopSLPD "},
      {&CKelSLPServiceImpl::RestartSLPD, "RestartSLPD " + kAgentName + "StopSLPD "},
      {&CKelSLPServiceImpl::EnsureSLPDIsRunning, "EnsureSLPDIsRunning " + kAgentName + "StartSLPD "},
  };
  services.SetState(kServiceStopPending);
  clock.OnSleep([] { throw std::runtime_error("broken"); });
  for (const Row& row : rows) {
    EXPECT_THAT((agent.*row.operation)(),
                SameResult(SResult(SResult::ERR_BASIC_API, "broken", kAgentName + row.trail)));
    EXPECT_EQ(services.OpenHandles(), 0);
    // Not locked.
    EXPECT_THAT(std::async(std::launch::async, [&] { return IsRunning(); }).get(), SameResult(kSuccess));
  }
}

TEST_F(SlpdControl, AQuestionSurvivesEveryFailedAllocation) {
  bool running = false;
  FailEachAllocation([&] { return agent.IsSLPDRunning(running); },
                     [&](const SResult& result) {
                       EXPECT_EQ(result.GetErrorCode(), SResult::ERR_OUT_OF_MEMORY);
                       EXPECT_EQ(services.OpenHandles(), 0);
                       EXPECT_FALSE(running);
                     });
  EXPECT_TRUE(running);
}

// Making sure that it runs.

TEST_F(SlpdControl, EnsuresThatTheDaemonRuns) {
  EXPECT_THAT(agent.EnsureSLPDIsRunning(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("StartService"), 0U);
  services.SetState(kServiceStopped);
  EXPECT_THAT(agent.EnsureSLPDIsRunning(), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
}

TEST_F(SlpdControl, ReportsADaemonThatDoesNotStayUp) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceRunning}, {.current_state = kServiceStopped}});
  EXPECT_THAT(agent.EnsureSLPDIsRunning(),
              SameResult(SResult(SResult::ERR_SLPD_START, "", kAgentName + "EnsureSLPDIsRunning StartSLPD")));
}

TEST_F(SlpdControl, ReportsEveryFailureOfMakingSure) {
  const std::string name = kAgentName + "EnsureSLPDIsRunning ";
  services.Fail(ServiceCall::kOpenManager);
  EXPECT_THAT(agent.EnsureSLPDIsRunning(),
              SameResult(SResult(
                  SResult::ERR_SCM_ACCESS, "Refused: OpenSCManager.",
                  name + kAgentName + "IsSLPDRunning " + kAgentName + "OpenServiceHandles OpenSCManager")));
  services.SetState(kServiceStopped);
  services.Fail(ServiceCall::kStart);
  EXPECT_THAT(agent.EnsureSLPDIsRunning(),
              SameResult(SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                 name + kAgentName + "StartSLPD StartService")));
  services.Fail(ServiceCall::kOpenService, 1, 2);
  EXPECT_THAT(agent.EnsureSLPDIsRunning(),
              SameResult(SResult(
                  SResult::ERR_SLPD_OPEN, "Refused: OpenService.",
                  name + kAgentName + "IsSLPDRunning " + kAgentName + "OpenServiceHandles OpenService")));
}

// The time of its start.

TEST_F(SlpdControl, TellsWhenTheDaemonWasStarted) {
  services.SetStartTime(12345);
  std::int64_t start = 0;
  EXPECT_THAT(agent.GetSLPDStartTimestamp(start), SameResult(kSuccess));
  EXPECT_EQ(start, 12345);
  EXPECT_THAT(services.Calls(),
              ElementsAre("OpenSCManager(0x20000)", "OpenService(slpd,0x4)", "Query=4", "OpenProcess(7)",
                          "GetProcessTimes", "CloseProcess", "CloseService", "CloseManager"));
}

TEST_F(SlpdControl, ReportsWhyTheTimeOfTheStartIsNotKnown) {
  const std::string name = kAgentName + "GetSLPDStartTimestamp";
  const std::vector<FailingCall> rows{
      {ServiceCall::kOpenManager,
       0,
       {SResult::ERR_SCM_ACCESS, "Refused: OpenSCManager.",
        name + " " + kAgentName + "OpenServiceHandles OpenSCManager"}},
      {ServiceCall::kOpenService,
       0,
       {SResult::ERR_SLPD_OPEN, "Refused: OpenService.",
        name + " " + kAgentName + "OpenServiceHandles OpenService"}},
      {ServiceCall::kQuery,
       0,
       {SResult::ERR_SLPD_QUERY, "Refused: Query.",
        name + " " + kAgentName + "GetServiceStatus QueryServiceStatusEx"}},
      {ServiceCall::kOpenProcess,
       0,
       {SResult::ERR_SLPD_PROCESS_OPEN, "Refused: OpenProcess.", name + " OpenProcess"}},
      {ServiceCall::kCreationTime,
       0,
       {SResult::ERR_SLPD_PROCESS_OPEN, "Refused: GetProcessTimes.", name + " GetProcessTimes"}},
  };
  std::int64_t start = 99;
  for (const FailingCall& row : rows) {
    services.Fail(row.call);
    EXPECT_THAT(agent.GetSLPDStartTimestamp(start), SameResult(row.result));
    EXPECT_EQ(services.OpenHandles(), 0);
  }
  for (const auto state : {kServiceStopped, kServiceStartPending, kServiceStopPending}) {
    services.SetState(state);
    EXPECT_THAT(agent.GetSLPDStartTimestamp(start),
                SameResult(SResult(SResult::ERR_SLPD_PROCESS_OPEN, "SLPD not running.", name)));
  }
  EXPECT_EQ(start, 99);
}

// Locks.

TEST_F(SlpdControl, OneAtATime) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStartPending}, {.current_state = kServiceRunning}});
  std::future<SResult> other;
  std::future_status while_starting = std::future_status::ready;
  clock.OnSleep([&] {
    other = std::async(std::launch::async, [&] { return IsRunning(); });
    // Long enough for a question that doesn't wait to have been asked.
    while_starting = other.wait_for(std::chrono::milliseconds(50));
  });
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(other.get(), SameResult(kSuccess));
  EXPECT_EQ(while_starting, std::future_status::timeout);
}

TEST_F(SlpdControl, TheTimeOfTheStartNeedsNoLock) {
  services.SetState(kServiceStopped);
  services.UpcomingAfterStart({{.current_state = kServiceStartPending}, {.current_state = kServiceRunning}});
  SResult while_starting;
  clock.OnSleep([&] {
    while_starting = std::async(std::launch::async, [&] {
                       std::int64_t start = 0;
                       return agent.GetSLPDStartTimestamp(start);
                     }).get();
  });
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(while_starting, SameResult(kSuccess));
}

// The forced pass.

TEST_F(SlpdControl, AStartRegistersEveryServiceAtOnce) {
  Registered("service:x://b");
  Registered("service:x://a", 60, {"default"});
  services.SetState(kServiceStopped);
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls("SLPReg"),
              ElementsAre("SLPReg(#7,service:x://a,60,null,,1)", "SLPReg(#10,service:x://b,60,null,,1)"));
}

TEST_F(SlpdControl, AFailedRenewalDoesNotFailTheStart) {
  Registered();
  services.SetState(kServiceStopped);
  scripted_slp::Next(scripted_slp::Function::kReg, scripted_slp::Returns(SLP_NETWORK_ERROR));
  EXPECT_THAT(agent.StartSLPD(), SameResult(kSuccess));
  EXPECT_EQ(agent.GetRegisteredServices().at(kUrl).FailedReRegistrations, 1U);
}

}  // namespace
}  // namespace kelsd
