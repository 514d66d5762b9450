#include <future>
#include <new>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/allocation_failure.h"
#include "support/core_fixture.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::ElementsAre;
using testing::IsEmpty;

class ClientConfig : public CoreFixture {};

/// Differs from the defaults in every field.
CKelSLPClientConfig Different() {
  std::vector<SResult> problems;
  CKelSLPClientConfig config(8, 3000, {200, 300}, 1300, "10.255.255.255", false, {"10.0.0.1", "eth1"}, false,
                             4270, true, false, true, "2.0.1", 50, 2000, {150, 250}, 2500, {500, 0, 750},
                             problems);
  // A list whose second value is too small is only taken together with its wait.
  EXPECT_THAT(problems, testing::SizeIs(1));
  EXPECT_TRUE(config.SetMulticastMaximumWaitAndTimeouts(2500, {500, 0, 750}).IsOk());
  return config;
}

TEST_F(ClientConfig, CannotBeReadBeforeInitialisation) {
  CKelSLPClientConfig config = Different();
  std::vector<SResult> errors = {SResult(SResult::ERR_URL_EMPTY)};
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED)));
  EXPECT_TRUE(config.EqualTo(Different()));
  EXPECT_THAT(errors, ElementsAre(SameResult(SResult(SResult::ERR_URL_EMPTY))));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(ClientConfig, IsReadInThisOrder) {
  InitializeCore();
  CKelSLPClientConfig config;
  std::vector<SResult> errors = {SResult(SResult::ERR_URL_EMPTY)};
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
  EXPECT_THAT(errors, IsEmpty());
  EXPECT_THAT(
      scripted_slp::Calls(),
      ElementsAre(
          "SLPGetProperty(net.slp.multicastTTL)", "SLPGetProperty(net.slp.unicastMaximumWait)",
          "SLPGetProperty(net.slp.unicastTimeouts)", "SLPGetProperty(net.slp.MTU)",
          "SLPGetProperty(net.slp.broadcastAddr)", "SLPGetProperty(net.slp.useDHCP)",
          "SLPGetProperty(net.slp.interfaces)", "SLPGetProperty(net.slp.activeDADetection)",
          "SLPGetProperty(net.slp.port)", "SLPGetProperty(net.slp.securityEnabled)",
          "SLPGetProperty(net.slp.useIPv4)", "SLPGetProperty(net.slp.useIPv6)",
          "SLPGetProperty(net.slp.OpenSLPVersion)", "SLPGetProperty(net.slp.maxResults)",
          "SLPGetProperty(net.slp.DADiscoveryMaximumWait)", "SLPGetProperty(net.slp.DADiscoveryTimeouts)",
          "SLPGetProperty(net.slp.multicastMaximumWait)", "SLPGetProperty(net.slp.multicastTimeouts)"));
}

TEST_F(ClientConfig, ReadsWhatIsInUse) {
  InitializeCore();
  const std::vector<std::pair<std::string, std::string>> values = {
      {"multicastTTL", "8"},
      {"unicastMaximumWait", "3000"},
      {"unicastTimeouts", "200,300"},
      {"MTU", "1300"},
      {"broadcastAddr", "10.255.255.255"},
      {"useDHCP", "false"},
      {"interfaces", "10.0.0.1, eth1"},
      {"activeDADetection", "false"},
      {"port", "4270"},
      {"securityEnabled", "true"},
      {"useIPv4", "false"},
      {"useIPv6", "true"},
      {"OpenSLPVersion", "2.0.1"},
      {"maxResults", "50"},
      {"DADiscoveryMaximumWait", "2000"},
      {"DADiscoveryTimeouts", "150,250"},
      {"multicastMaximumWait", "2500"},
      {"multicastTimeouts", "500,600"},
  };
  for (const auto& [key, value] : values) {
    scripted_slp::SetFileProperty("net.slp." + key, value);
    // What a file says counts where the process has set nothing.
    SLPSetProperty(("net.slp." + key).c_str(), nullptr);
  }
  CKelSLPClientConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
  EXPECT_THAT(errors, IsEmpty());
  CKelSLPClientConfig expected = Different();
  ASSERT_TRUE(expected.SetMulticastTimeouts({500, 600}).IsOk());
  EXPECT_TRUE(config.EqualTo(expected));
  EXPECT_EQ(config.GetOpenSLPVersion(), "2.0.1");
  EXPECT_EQ(config.GetTimeout(), 4500);
}

TEST_F(ClientConfig, UnreadablePropertiesKeepTheirDefaultsAndAreListed) {
  InitializeCore();
  for (const CKelSLPConfig::EProperty property : CKelSLPConfig::GetEProperty()) {
    scripted_slp::RemoveProperty(CKelSLPConfig::ToStringKey(property));
  }
  CKelSLPClientConfig config = Different();
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
  EXPECT_TRUE(config.EqualTo(CKelSLPClientConfig()));
  EXPECT_EQ(config.GetTimeout(), 10000);
  EXPECT_EQ(errors.size(), 18U);
}

TEST_F(ClientConfig, EachFailureIsTold) {
  InitializeCore();
  scripted_slp::RemoveProperty("net.slp.multicastTTL");
  scripted_slp::SetFileProperty("net.slp.port", "x");
  SLPSetProperty("net.slp.multicastTimeouts", "y");
  SLPSetProperty("net.slp.MTU", "575");
  CKelSLPClientConfig config;
  std::vector<SResult> errors = {SResult(SResult::ERR_URL_EMPTY)};
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
  EXPECT_THAT(
      errors,
      ElementsAre(
          SameResult(SResult(SResult::ERR_PROPERTY_GET, "Property name: net.slp.multicastTTL",
                             "CKelSLPImpl::GetSLPClientConfig "
                             "kelsd::CKelSLPImpl::GetNumericProperty "
                             "kelsd::CKelSLPImpl::GetSLPProperty")),
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE, "Property: Port. StringConvert(x,long double,1).",
                             "CKelSLPImpl::GetSLPClientConfig "
                             "kelsd::CKelSLPImpl::GetNumericProperty "
                             "kelsd::CKelSLPImpl::ParseNumericProperty")),
          SameResult(SResult(SResult::ERR_PROPERTY_PARSE,
                             "Property: Multicast Timeouts. StringConvert(y,long double,1).",
                             "CKelSLPImpl::GetSLPClientConfig "
                             "kelsd::CKelSLPImpl::GetTimeoutList "
                             "kelsd::CKelSLPImpl::ParseTimeoutsList")),
          SameResult(SResult(SResult::ERR_INVALID_PARAMETER, "MTU is too small (must be at least 576): 575.",
                             "kelsd::CKelSLPConfig::SetMTU kelsd::CKelSLPConfig::ValidateMTU"))));
}

TEST_F(ClientConfig, AnExceptionWhileReadingLeavesTheOutputsAlone) {
  InitializeCore();
  Next(Function::kGetProperty, scripted_slp::Throws(std::bad_alloc()));
  CKelSLPClientConfig config = Different();
  std::vector<SResult> errors = {SResult(SResult::ERR_URL_EMPTY)};
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors),
              SameResult(SResult(SResult::ERR_OUT_OF_MEMORY, std::bad_alloc().what())));
  EXPECT_TRUE(config.EqualTo(Different()));
  EXPECT_EQ(errors.size(), 1U);
}

TEST_F(ClientConfig, OutputsAreWrittenWholeOrNotAtAllWhicheverAllocationFails) {
  InitializeCore();
  const CKelSLPClientConfig before = Different();
  CKelSLPClientConfig config = before;
  std::vector<SResult> errors = {SResult(SResult::ERR_URL_EMPTY)};
  int failed = 0;
  FailEachAllocation([&] { return CKelSLPImpl::GetSLPClientConfig(config, errors); },
                     [&](const SResult& result) {
                       if (result.IsOk()) {
                         // A number stream takes want of memory for a text that is no number.
                         EXPECT_EQ(config.GetOpenSLPVersion(), "2.0.0");
                         EXPECT_THAT(errors, ElementsAre(SResult::ERR_PROPERTY_PARSE));
                         config = before;
                         errors = {SResult(SResult::ERR_URL_EMPTY)};
                         return;
                       }
                       ++failed;
                       EXPECT_EQ(result, SResult::ERR_OUT_OF_MEMORY);
                       EXPECT_TRUE(config.EqualTo(before));
                       EXPECT_THAT(errors, ElementsAre(SResult::ERR_URL_EMPTY));
                     });
  EXPECT_GT(failed, 30);
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(ClientConfig, IsReadBesideSearches) {
  InitializeCore();
  const std::shared_lock searching(CKelSLPImpl::CoreLock());
  CKelSLPClientConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(CKelSLPImpl::GetSLPClientConfig(config, errors), SameResult(kSuccess));
}

TEST_F(ClientConfig, SettingAnEqualOneDoesNothing) {
  InitializeCore();
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(CKelSLPClientConfig()), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
  ASSERT_TRUE(CKelSLPImpl::SetSLPClientConfig(Different()).IsOk());
  scripted_slp::ForgetCalls();
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(Different()), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(ClientConfig, SettingAnEqualOneDoesNotInitialise) {
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(CKelSLPClientConfig()), SameResult(kSuccess));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(ClientConfig, SettingInitialisesAgainAndApplies) {
  InitializeCore();
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(Different()), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4"));
  EXPECT_THAT(
      scripted_slp::Calls("SLPSetProperty"),
      ElementsAre("SLPSetProperty(net.slp.multicastTTL,8)", "SLPSetProperty(net.slp.unicastMaximumWait,3000)",
                  "SLPSetProperty(net.slp.unicastTimeouts,200,300)", "SLPSetProperty(net.slp.MTU,1300)",
                  "SLPSetProperty(net.slp.broadcastAddr,10.255.255.255)",
                  "SLPSetProperty(net.slp.useDHCP,false)", "SLPSetProperty(net.slp.interfaces,10.0.0.1,ETH1)",
                  "SLPSetProperty(net.slp.maxResults,50)",
                  "SLPSetProperty(net.slp.DADiscoveryMaximumWait,2000)",
                  "SLPSetProperty(net.slp.DADiscoveryTimeouts,150,250)",
                  "SLPSetProperty(net.slp.multicastMaximumWait,2500)",
                  "SLPSetProperty(net.slp.multicastTimeouts,500,0,0)"));
}

TEST_F(ClientConfig, AppliesSixTimeoutsAtMost) {
  std::vector<SResult> problems;
  // The long constructor takes lists as they are.
  const CKelSLPClientConfig config(255, 4000, {100, 200, 300, 400, 500, 600, 700}, 1400, "", true, {}, true,
                                   427, false, true, false, "", -1, 4000,
                                   {100, 200, 300, 400, 500, 600, 700, 0}, 6000, {100}, problems);
  ASSERT_THAT(problems, IsEmpty());
  EXPECT_THAT(CKelSLPImpl::SetSLPClientConfig(config), SameResult(kSuccess));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty(net.slp.unicastTimeouts"),
              ElementsAre("SLPSetProperty(net.slp.unicastTimeouts,100,200,300,400,500,600)"));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty(net.slp.DADiscoveryTimeouts"),
              ElementsAre("SLPSetProperty(net.slp.DADiscoveryTimeouts,100,200,300,400,500,600)"));
  EXPECT_THAT(scripted_slp::Calls("SLPSetProperty(net.slp.multicastTimeouts"),
              ElementsAre("SLPSetProperty(net.slp.multicastTimeouts,100)"));
}

TEST_F(ClientConfig, StaysKeptWhenInitialisationFails) {
  InitializeCore();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(
      CKelSLPImpl::SetSLPClientConfig(Different()),
      SameResult(SResult(SResult::ERR_BASIC_NETWORK_INIT_FAILED, "",
                         "kelsd::CKelSLPImpl::SetSLPClientConfig kelsd::CKelSLPImpl::InitializeInternal "
                         "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(CKelSLPImpl::Initialize(), SameResult(kSuccess));
  EXPECT_EQ(scripted_slp::Property("net.slp.MTU"), "1300");
}

TEST_F(ClientConfig, StaysKeptWhenInitialisationThrows) {
  InitializeCore();
  Next(Function::kOpen, scripted_slp::Throws(std::runtime_error("broken")));
  EXPECT_THAT(
      CKelSLPImpl::SetSLPClientConfig(Different()),
      SameResult(SResult(SResult::ERR_BASIC_API, "broken", "kelsd::CKelSLPImpl::SetSLPClientConfig ")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(CKelSLPImpl::Initialize(), SameResult(kSuccess));
  EXPECT_EQ(scripted_slp::Property("net.slp.MTU"), "1300");
}

TEST_F(ClientConfig, ThatCannotBeCopiedLeavesTheCoreAlone) {
  InitializeCore();
  const CKelSLPClientConfig config = Different();
  // A copy has four lists, each with memory of its own.
  for (int successes = 0; successes < 4; ++successes) {
    const AllocationFailure failure(successes);
    EXPECT_EQ(CKelSLPImpl::SetSLPClientConfig(config), SResult::ERR_OUT_OF_MEMORY);
    EXPECT_TRUE(failure.Happened());
    EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  }
  EXPECT_THAT(scripted_slp::Calls("SLPClose"), IsEmpty());
}

TEST_F(ClientConfig, SettingWaitsForSearches) {
  InitializeCore();
  CKelSLPImpl::CoreLock().lock_shared();
  std::future<SResult> set =
      std::async(std::launch::async, [] { return CKelSLPImpl::SetSLPClientConfig(Different()); });
  // Nothing may happen before the lock is free, however long the other thread gets.
  EXPECT_EQ(set.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
  CKelSLPImpl::CoreLock().unlock_shared();
  EXPECT_THAT(set.get(), SameResult(kSuccess));
}

}  // namespace
}  // namespace kelsd
