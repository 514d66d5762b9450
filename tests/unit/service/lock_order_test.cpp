// The agent's lock is taken before the core's, by every operation that takes both: otherwise two of them
// could wait for each other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <ostream>
#include <string>

#include "service_fixture.h"

namespace kelsd {
namespace {

struct LockingOperation {
  std::string name;
  std::function<SResult(CKelSLPServiceImpl&)> run;
};

void PrintTo(const LockingOperation& operation, std::ostream* out) {
  *out << operation.name;
}

class LockOrder : public ServiceFixture, public testing::WithParamInterface<LockingOperation> {};

TEST_P(LockOrder, AnOperationThatWaitsForTheCoresLockHoldsTheAgents) {
  constexpr int kTries = 100;
  Registered();
  // So that a deregistration, too, needs the core's lock.
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  std::unique_lock core_lock(CKelSLPImpl::CoreLock());
  std::future<SResult> operation = std::async(std::launch::async, [&] { return GetParam().run(agent); });
  // Until the operation has the agent's lock, another thread gets it.
  bool waits = false;
  std::future<SResult> question;
  for (int i = 0; i < kTries && !waits; ++i) {
    question = std::async(std::launch::async, [&] {
      bool running = false;
      return agent.IsSLPDRunning(running);
    });
    // Long enough for a question that doesn't wait.
    waits = question.wait_for(std::chrono::milliseconds(100)) == std::future_status::timeout;
  }
  EXPECT_TRUE(waits);
  UseConfigFile(folder.Path("slp.conf"));
  core_lock.unlock();
  EXPECT_THAT(operation.get(), SameResult(kSuccess));
  EXPECT_THAT(question.get(), SameResult(kSuccess));
}

INSTANTIATE_TEST_SUITE_P(
    Operations, LockOrder,
    testing::Values(
        LockingOperation{"Registration",
                         [](CKelSLPServiceImpl& agent) { return agent.RegisterService(kUrl, 60, {}, {}); }},
        LockingOperation{"Renewal",
                         [](CKelSLPServiceImpl& agent) { return agent.ReRegisterService(kUrl, 60, {}, {}); }},
        LockingOperation{"Deregistration",
                         [](CKelSLPServiceImpl& agent) { return agent.DeregisterService(kUrl); }},
        LockingOperation{"Pass",
                         [](CKelSLPServiceImpl& agent) {
                           agent.CheckRegistrations(true);
                           return kSuccess;
                         }},
        LockingOperation{
            "Configuration",
            [](CKelSLPServiceImpl& agent) { return agent.SetSLPServiceConfig(CKelSLPServiceConfig()); }}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace kelsd
