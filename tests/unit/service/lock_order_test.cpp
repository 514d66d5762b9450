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
  constexpr std::chrono::seconds kLimit{10};
  Registered();
  // So that a deregistration, too, needs the core's lock.
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  std::unique_lock core_lock(CKelSLPImpl::CoreLock());
  const auto begin = [&] { return std::async(std::launch::async, [&] { return GetParam().run(agent); }); };
  std::future<SResult> operation = begin();
  // Until the operation has the agent's lock, another thread gets it.
  bool waits = false;
  std::future<SResult> question;
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (!waits && std::chrono::steady_clock::now() < end) {
    // A pass that finds the agent's lock taken gives up; then the next one has to show it.
    if (operation.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready) {
      EXPECT_THAT(operation.get(), SameResult(kSuccess));
      operation = begin();
    }
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
