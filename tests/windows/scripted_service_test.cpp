// Starting and stopping a service that takes its time, stalls or fails, through the real service control
// manager.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "kelsd/CKelSLPService.h"
#include "support/host_daemon/windows/slpd_service.h"
#include "support/machine_delay.h"
#include "support/same_result.h"

namespace kelsd {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const std::string kAgent = "kelsd::CKelSLPServiceImpl::";
// What a machine that is busy with other things may add to any time.
constexpr milliseconds kSlack{5000};
// Long before the end of a script that stalls.
constexpr milliseconds kGivenUpWithin{10000};
// A machine that is later than this may bring a script out of step with those who wait for the service.
constexpr milliseconds kInStep{200};

auto Succeeded() {
  return SameResult(SResult(SResult::ERR_SUCCESS));
}

class ScriptedService : public testing::Test {
 protected:
  ScriptedService() { support::RemoveSlpdService(); }
  ~ScriptedService() override { support::RemoveSlpdService(); }

  static void Enter(const std::string& script) {
    support::CreateSlpdService(
        "\"" + std::filesystem::absolute(KELSD_SCRIPTED_SERVICE_PROGRAM).make_preferred().string() + "\" " +
        script);
  }

  static DWORD State() { return support::SlpdServiceStatus().dwCurrentState; }

  static void StartAndWaitFor(DWORD state) {
    support::StartSlpdService();
    const auto end = steady_clock::now() + kSlack;
    while (State() != state && steady_clock::now() < end) {
      std::this_thread::sleep_for(milliseconds(10));
    }
    ASSERT_EQ(State(), state);
  }

  struct Outcome {
    SResult result = SResult(SResult::ERR_SUCCESS);
    milliseconds took{};
    DWORD state = 0;
  };

  /// What comes of `operation` with a service that has just been entered, and `running` first if so asked.
  /// When it fails while the machine was late, it is tried with the service entered anew, two times at most.
  static Outcome OutcomeInStep(const std::string& script, SResult (*operation)(), bool running) {
    constexpr int kTries = 3;
    Outcome outcome;
    for (int i = 0; i < kTries; ++i) {
      support::RemoveSlpdService();
      Enter(script);
      if (running) {
        StartAndWaitFor(SERVICE_RUNNING);
      }
      support::MachineDelay delay;
      outcome.took = Time([&] { outcome.result = operation(); });
      outcome.state = State();
      if (outcome.result.IsOk() || delay.Total() <= kInStep) {
        break;
      }
    }
    return outcome;
  }

  /// How long `operation` takes.
  template <typename Operation>
  static milliseconds Time(Operation operation) {
    const auto start = steady_clock::now();
    operation();
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  }
};

TEST_F(ScriptedService, IsNotThere) {
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_OPEN, support::SystemMessage(ERROR_SERVICE_DOES_NOT_EXIST),
                                 kAgent + "StartSLPD " + kAgent + "OpenServiceHandles OpenService")));
  bool running = true;
  EXPECT_THAT(CKelSLPService::IsSLPDRunning(running),
              SameResult(SResult(SResult::ERR_SLPD_OPEN, support::SystemMessage(ERROR_SERVICE_DOES_NOT_EXIST),
                                 kAgent + "IsSLPDRunning " + kAgent + "OpenServiceHandles OpenService")));
  EXPECT_TRUE(running) << "unchanged";
}

TEST_F(ScriptedService, HasNoProgram) {
  support::CreateSlpdService("C:\\nowhere\\slpd.exe");
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_START, support::SystemMessage(ERROR_FILE_NOT_FOUND),
                                 kAgent + "StartSLPD StartService")));
}

TEST_F(ScriptedService, IsWaitedForWhileItsCheckPointGoesOn) {
  // Every step takes less than the hint, all of them take longer.
  const Outcome outcome = OutcomeInStep(
      "pending=1,1900 sleep=1500 pending=2,1900 sleep=1500 pending=3,1900 sleep=1000 running stop=1,2000 "
      "stopped=0",
      &CKelSLPService::StartSLPD, false);
  EXPECT_THAT(outcome.result, Succeeded());
  EXPECT_GE(outcome.took, milliseconds(4000));
  EXPECT_EQ(outcome.state, static_cast<DWORD>(SERVICE_RUNNING));
}

TEST_F(ScriptedService, IsGivenUpWhenItsCheckPointStalls) {
  Enter("pending=1,0 sleep=15000 running stop=1,2000 stopped=0");
  support::MachineDelay delay;
  milliseconds took{};
  took = Time([] {
    EXPECT_THAT(
        CKelSLPService::StartSLPD(),
        SameResult(SResult(SResult::ERR_SLPD_START,
                           "Service did not start up. Current State: 2. Exit Code: 0. Check Point: 1. "
                           "Wait Hint: 0.",
                           kAgent + "StartSLPD ")));
  });
  EXPECT_GE(took, milliseconds(1000));
  EXPECT_LT(took, kGivenUpWithin + delay.Allowance());
}

TEST_F(ScriptedService, HasAsLongAsItsHintSays) {
  Enter("pending=7,2500 sleep=15000 running stop=1,2000 stopped=0");
  support::MachineDelay delay;
  milliseconds took{};
  took = Time([] {
    EXPECT_THAT(
        CKelSLPService::StartSLPD(),
        SameResult(SResult(SResult::ERR_SLPD_START,
                           "Service did not start up. Current State: 2. Exit Code: 0. Check Point: 7. "
                           "Wait Hint: 2500.",
                           kAgent + "StartSLPD ")));
  });
  EXPECT_GE(took, milliseconds(2500));
  EXPECT_LT(took, kGivenUpWithin + delay.Allowance());
}

TEST_F(ScriptedService, CountsAsStartedWhenItRunsLaterThanItsHintSays) {
  // It is looked at every second: at the second look it runs, longer after its only step than the hint says.
  const Outcome outcome = OutcomeInStep("pending=1,1300 sleep=1600 running stop=1,2000 stopped=0",
                                        &CKelSLPService::StartSLPD, false);
  EXPECT_THAT(outcome.result, Succeeded());
}

TEST_F(ScriptedService, TellsItsExitCodeWhenItEndsInsteadOfStarting) {
  Enter("pending=1,2000 sleep=500 stopped=5");
  EXPECT_THAT(
      CKelSLPService::StartSLPD(),
      SameResult(SResult(SResult::ERR_SLPD_START,
                         "Service did not start up. Current State: 1. Exit Code: 5. Check Point: 0. Wait "
                         "Hint: 0.",
                         kAgent + "StartSLPD ")));
}

TEST_F(ScriptedService, CountsAsRunningWhileItStarts) {
  Enter("pending=1,9000 sleep=15000 running stop=1,2000 stopped=0");
  StartAndWaitFor(SERVICE_START_PENDING);
  EXPECT_THAT(CKelSLPService::StartSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_ALREADY_RUNNING, "", kAgent + "StartSLPD ")));
  bool running = true;
  EXPECT_THAT(CKelSLPService::IsSLPDRunning(running), Succeeded());
  EXPECT_FALSE(running);
}

TEST_F(ScriptedService, CanNotBeStoppedWhileItStarts) {
  Enter("pending=1,9000 sleep=15000 running stop=1,2000 stopped=0");
  StartAndWaitFor(SERVICE_START_PENDING);
  ASSERT_FALSE(support::ControlSlpdService(SERVICE_CONTROL_STOP));
  // Systems have different reasons for that.
  const std::string reason = support::SystemMessage(GetLastError());
  EXPECT_THAT(CKelSLPService::StopSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_STOP, reason, kAgent + "StopSLPD ControlService")));
  EXPECT_EQ(State(), static_cast<DWORD>(SERVICE_START_PENDING));
}

TEST_F(ScriptedService, IsWaitedForWhileItStops) {
  const Outcome outcome = OutcomeInStep("running stop=1,1900 sleep=1500 pending=2,1900 sleep=1000 stopped=0",
                                        &CKelSLPService::StopSLPD, true);
  EXPECT_THAT(outcome.result, Succeeded());
  EXPECT_GE(outcome.took, milliseconds(2400));
  EXPECT_EQ(outcome.state, static_cast<DWORD>(SERVICE_STOPPED));
}

TEST_F(ScriptedService, IsGivenUpWhenItsStopStalls) {
  Enter("running stop=1,0 sleep=15000 stopped=0");
  StartAndWaitFor(SERVICE_RUNNING);
  EXPECT_THAT(CKelSLPService::StopSLPD(),
              SameResult(SResult(SResult::ERR_SLPD_WAIT_TIMEOUT, "",
                                 kAgent + "StopSLPD " + kAgent + "WaitForServiceStatusChange")));
  bool running = true;
  EXPECT_THAT(CKelSLPService::IsSLPDRunning(running), Succeeded());
  EXPECT_FALSE(running) << "it is stopping";
}

TEST_F(ScriptedService, IsStartedAnewWhenAStopUnderWayHasEnded) {
  Enter("running stop=1,5000 sleep=1500 stopped=0");
  StartAndWaitFor(SERVICE_RUNNING);
  const DWORD before = support::SlpdServiceStatus().dwProcessId;
  ASSERT_TRUE(support::ControlSlpdService(SERVICE_CONTROL_STOP));
  ASSERT_EQ(State(), static_cast<DWORD>(SERVICE_STOP_PENDING));
  EXPECT_THAT(CKelSLPService::StartSLPD(), Succeeded());
  EXPECT_EQ(State(), static_cast<DWORD>(SERVICE_RUNNING));
  EXPECT_NE(support::SlpdServiceStatus().dwProcessId, before);
}

TEST_F(ScriptedService, IsStoppedWhenAnothersStopHasEnded) {
  Enter("running stop=1,5000 sleep=1500 stopped=0");
  StartAndWaitFor(SERVICE_RUNNING);
  ASSERT_TRUE(support::ControlSlpdService(SERVICE_CONTROL_STOP));
  EXPECT_THAT(CKelSLPService::StopSLPD(), Succeeded());
  EXPECT_EQ(State(), static_cast<DWORD>(SERVICE_STOPPED));
}

}  // namespace
}  // namespace kelsd
