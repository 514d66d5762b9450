#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <mutex>
#include <numeric>
#include <shared_mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/exclusive_file.h"
#include "service_fixture.h"
#include "support/allocation_failure.h"

namespace kelsd {
namespace {

using scripted_slp::Function;
using scripted_slp::Next;
using scripted_slp::Returns;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

class ServiceConfiguration : public ServiceFixture {
 protected:
  /// Somebody else writes the file.
  void LockFile() {
    bool created = false;
    other_writer_ = platform::ExclusiveFile::Open(folder.Path("slp.conf"), created);
    ASSERT_NE(other_writer_, nullptr);
  }

  /// What the SLP library reads from the file from now on.
  static void FileSays(const std::string& key, const std::string& value) {
    scripted_slp::SetFileProperty(key, value);
  }

  CKelSLPServiceConfig Read(std::vector<SResult>& errors) {
    CKelSLPServiceConfig config;
    EXPECT_THAT(agent.GetSLPServiceConfig(config, errors), SameResult(kSuccess));
    return config;
  }

  SResult MissingVariable(const std::string& trail) {
    return {SResult::ERR_ENV_NOT_SET,
            "Create an environment variable with name 'OpenSLPConfig' that contains the path to the SLP "
            "configuration file e.g. '" +
                agent.GetDefaultEnvConfigFileName() + "'.",
            kAgentName + trail + " " + kAgentName + "GetSLPEnvConfigFileName"};
  }

  /// How long the agent has waited so far.
  std::uint32_t WaitedMilliseconds() {
    const std::vector<std::uint32_t> sleeps = clock.Sleeps();
    return std::accumulate(sleeps.begin(), sleeps.end(), std::uint32_t{0});
  }

  std::unique_ptr<platform::ExclusiveFile> other_writer_;
};

auto TwoToThreeSeconds() {
  return testing::AllOf(testing::Gt(2000U), testing::Le(3000U));
}

// Reading.

TEST_F(ServiceConfiguration, IsTheSnapshotOfTheLastInitialisation) {
  FileSays("net.slp.MTU", "1000");
  FileSays("net.slp.DAHeartBeat", "1");
  std::vector<SResult> errors{SResult()};
  EXPECT_EQ(Read(errors).GetMTU(), 1400);
  EXPECT_THAT(errors, IsEmpty());
  EXPECT_THAT(CKelSLPImpl::ReInitialize(false), SameResult(kSuccess));
  EXPECT_EQ(Read(errors).GetMTU(), 1000);
  EXPECT_THAT(
      errors,
      ElementsAre(SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                                     "Directory agent heart beat is too small (must be at least 2000): 1.",
                                     "kelsd::CKelSLPServiceConfig::SetDAHeartBeat "
                                     "kelsd::CKelSLPServiceConfig::ValidateDAHeartBeat"))));
}

TEST_F(ServiceConfiguration, NeedsAnInitialisedCore) {
  CKelSLPImpl::Shutdown();
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(agent.GetSLPServiceConfig(config, errors),
              SameResult(SResult(SResult::ERR_NOT_INITIALIZED, "", kAgentName + "GetSLPServiceConfig")));
  EXPECT_EQ(errors.size(), 1U);
}

TEST_F(ServiceConfiguration, InitialisesAgainOnceWhenTheVariableIsNew) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  FileSays("net.slp.MTU", "1000");
  Next(Function::kOpen, scripted_slp::Runs([this] { UseConfigFile(folder.Path("slp.conf")); }));
  std::vector<SResult> errors;
  EXPECT_EQ(Read(errors).GetMTU(), 1000);
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4"));
}

TEST_F(ServiceConfiguration, ReportsProblemsOfTheFile) {
  const std::string validate = "kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile";
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(
      agent.GetSLPServiceConfig(config, errors),
      SameResult(SResult(SResult::ERR_RESTART_REQUIRED, "", kAgentName + "GetSLPServiceConfig " + validate)));
  Next(Function::kOpen, Returns(SLP_PARAMETER_BAD));
  EXPECT_THAT(agent.GetSLPServiceConfig(config, errors),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: ",
                                 kAgentName + "GetSLPServiceConfig " + validate +
                                     " kelsd::CKelSLPImpl::ReInitialize "
                                     "kelsd::CKelSLPImpl::ReInitializeInternal "
                                     "kelsd::CKelSLPImpl::InitializeInternal "
                                     "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_EQ(errors.size(), 1U);
}

TEST_F(ServiceConfiguration, TellsWhyTheInitialisationFailed) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", "elsewhere");
  Next(Function::kOpen, scripted_slp::Throws(std::runtime_error("broken")));
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(agent.GetSLPServiceConfig(config, errors),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, " Re-initialization failed: broken",
                                 kAgentName + "GetSLPServiceConfig " + kAgentName +
                                     "ValidateSLPEnvironmentConfigFile kelsd::CKelSLPImpl::ReInitialize ")));
  EXPECT_EQ(errors.size(), 1U);
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
}

TEST_F(ServiceConfiguration, ReadingSurvivesEveryFailedAllocation) {
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  FailEachAllocation(
      [&] { return agent.GetSLPServiceConfig(config, errors); },
      [&](const SResult& result) {
        // The name of the file in use cannot be read without memory.
        EXPECT_THAT(result.GetErrorCode(),
                    AnyOf(SResult::ERR_OUT_OF_MEMORY, SResult::ERR_RESTART_REQUIRED, SResult::ERR_SUCCESS));
        if (result.IsNotOk()) {
          EXPECT_EQ(errors.size(), 1U);
        }
        EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
        // Not locked, and made up for where it is left uninitialised.
        EXPECT_THAT(CKelSLPImpl::Initialize(), SameResult(kSuccess));
        EXPECT_EQ(scripted_slp::OpenHandles(), 1);
        errors.assign(1, SResult());
      });
  EXPECT_THAT(errors, IsEmpty());
}

TEST_F(ServiceConfiguration, IsReadWhileSearchesRun) {
  const std::shared_lock search(CKelSLPImpl::CoreLock());
  std::vector<SResult> errors;
  std::async(std::launch::async, [&] { Read(errors); }).get();
}

// Reading straight from the file.

TEST_F(ServiceConfiguration, OfAnEmptyFileIsThePresets) {
  CKelSLPServiceConfig config;
  config.SetAppendLog(false);
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors), SameResult(kSuccess));
  EXPECT_THAT(errors, IsEmpty());
  EXPECT_EQ(config.GetMulticastTTL(), 255);
  EXPECT_EQ(config.GetUnicastMaximumWait(), 5000);
  EXPECT_EQ(config.GetUnicastTimeouts(), CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP());
  EXPECT_EQ(config.GetMTU(), 1400);
  EXPECT_EQ(config.GetPPort(), 427);
  EXPECT_EQ(config.GetOpenSLPVersion(), "");
  EXPECT_TRUE(config.IsUseScopesDefaultSLP() && config.GetAppendLog() && config.GetWatchRegistrationPID());
  EXPECT_EQ(config.GetDAHeartBeat(), 10800);
  EXPECT_EQ(config.GetDAActiveDiscoveryInterval(), 900);
  CKelSLPServiceConfig defaults;
  EXPECT_TRUE(
      defaults.SetUnicasttMaximumWaitAndTimeouts(5000, CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP()).IsOk());
  EXPECT_TRUE(config.EqualTo(defaults));
}

TEST_F(ServiceConfiguration, OfAFileIsWhatItSays) {
  folder.Write("slp.conf",
               "net.slp.multicastTTL = 7\nnet.slp.unicastMaximumWait=900\nnet.slp.unicastTimeouts=100,200\n"
               "net.slp.MTU=1000\nnet.slp.broadcastAddr=10.0.0.255\nnet.slp.useDHCP=0\n"
               "net.slp.interfaces=10.0.0.1, 10.0.0.2\nnet.slp.activeDADetection=no\nnet.slp.port=1427\n"
               "net.slp.securityEnabled=yes\nnet.slp.useIPv4=false\nnet.slp.useIPv6=True\nnet.slp.isDA=yes\n"
               "net.slp.DAHeartBeat=2000\nnet.slp.staleDACheckPeriod=3\nnet.slp.useScopes=a, b\n"
               "net.slp.DAAddresses=10.0.0.3\nnet.slp.watchRegistrationPID=0\nnet.slp.indexSrvtype=1\n"
               "net.slp.indexedAttributes=X-A\nnet.slp.traceDATraffic=1\nnet.slp.traceReg=1\n"
               "net.slp.traceDrop=1\nnet.slp.traceMsg=1\nnet.slp.appendLog=0\nnet.slp.isBroadcastOnly=1\n"
               "net.slp.passiveDADetection=0\nnet.slp.DAActiveDiscoveryInterval=5\n"
               "net.slp.checkSourceAddr=0\nnet.slp.OpenSLPVersion=9\n");
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors), SameResult(kSuccess));
  EXPECT_THAT(errors, IsEmpty());
  std::vector<SResult> refused;
  const CKelSLPServiceConfig expected(7, 900, {100, 200}, 1000, "10.0.0.255", false, {"10.0.0.1", "10.0.0.2"},
                                      false, 1427, true, false, true, "", true, 2000, 3, {"A", "B"},
                                      {"10.0.0.3"}, false, true, {"x-a"}, true, true, true, true, false, true,
                                      false, 5, false, refused);
  EXPECT_THAT(refused, IsEmpty());
  EXPECT_TRUE(config.EqualTo(expected));
  EXPECT_EQ(config.GetOpenSLPVersion(), "");
}

TEST_F(ServiceConfiguration, OfAFileWithBadValuesKeepsPresetsAndListsThem) {
  folder.Write("slp.conf",
               "net.slp.MTU = x\nnet.slp.unicastTimeouts = 500,abc\nnet.slp.DAHeartBeat = 1\n"
               "net.slp.staleDACheckPeriod =\n");
  CKelSLPServiceConfig config;
  std::vector<SResult> errors;
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors), SameResult(kSuccess));
  const std::string prefix = kAgentName + "GetSLPServiceConfigFromFileInternal " + kAgentName;
  const auto unparsed = [&](const std::string& detail, const std::string& trail) {
    return SameResult(SResult(SResult::ERR_PROPERTY_PARSE, "Property: net.slp." + detail, prefix + trail));
  };
  const std::string numeric = "ReadNumericProperty kelsd::CKelSLPImpl::ParseNumericProperty";
  // What the record itself refuses comes last.
  EXPECT_THAT(
      errors,
      ElementsAre(unparsed("unicastTimeouts. StringConvert(abc,long double,1).",
                           "ReadTimeoutList kelsd::CKelSLPImpl::ParseTimeoutsList"),
                  unparsed("MTU. StringConvert(x,long double,1).", numeric),
                  unparsed("staleDACheckPeriod. StringConvert(,long double,1).", numeric),
                  SameResult(SResult(SResult::ERR_INVALID_PARAMETER,
                                     "Directory agent heart beat is too small (must be at least 2000): 1.",
                                     "kelsd::CKelSLPServiceConfig::SetDAHeartBeat "
                                     "kelsd::CKelSLPServiceConfig::ValidateDAHeartBeat"))));
  EXPECT_EQ(config.GetMTU(), 1400);
  EXPECT_EQ(config.GetDAHeartBeat(), 10800);
}

TEST_F(ServiceConfiguration, FromAFileThatSomebodyElseWritesFailsInTime) {
  LockFile();
  CKelSLPServiceConfig config;
  std::vector<SResult> errors{SResult()};
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors),
              SameResult(SResult(SResult::ERR_CONF_OPEN, folder.Path("slp.conf"),
                                 kAgentName + "GetSLPServiceConfigFromFileInternal ")));
  EXPECT_THAT(WaitedMilliseconds(), TwoToThreeSeconds());
  EXPECT_EQ(errors.size(), 1U);
  ClearEnvironment("OpenSLPConfig");
  EXPECT_THAT(agent.GetSLPServiceConfigFromFileInternal(config, errors),
              SameResult(MissingVariable("GetSLPServiceConfigFromFileInternal")));
}

// Writing.

constexpr const char* kWritten =
    "net.slp.multicastTTL = 255\r\nnet.slp.unicastMaximumWait = 4000\r\n"
    "net.slp.unicastTimeouts = 500,750,1100,1600\r\nnet.slp.MTU = 1400\r\n"
    "net.slp.broadcastAddr = 255.255.255.255\r\nnet.slp.useDHCP = true\r\nnet.slp.interfaces = \r\n"
    "net.slp.isDA = false\r\nnet.slp.DAHeartBeat = 10800\r\nnet.slp.staleDACheckPeriod = 0\r\n"
    "net.slp.useScopes = LAB,TAMRO\r\nnet.slp.DAAddresses = \r\nnet.slp.watchRegistrationPID = true\r\n"
    "net.slp.indexSrvtype = false\r\nnet.slp.indexedAttributes = x-b,x-a\r\n"
    "net.slp.traceDATraffic = false\r\nnet.slp.traceReg = false\r\nnet.slp.traceDrop = false\r\n"
    "net.slp.traceMsg = false\r\nnet.slp.appendLog = true\r\n";

TEST_F(ServiceConfiguration, WritesTwentyKeysInThisOrder) {
  CKelSLPServiceConfig config;
  config.SetUseScopes({"lab", "tamro"});
  config.SetIndexedAttributes({"X-B", "x-a"});
  EXPECT_THAT(agent.SetSLPServiceConfig(config), SameResult(kSuccess));
  EXPECT_EQ(folder.Read("slp.conf"), kWritten);
}

TEST_F(ServiceConfiguration, WritesAroundEverythingElse) {
  folder.Write("slp.conf",
               "# ours\nnet.slp.MTU = 1\nnet.slp.port = 5\n; theirs\nforeign = x\nnet.slp.MTU = 2\n");
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_THAT(folder.Read("slp.conf"),
              testing::StartsWith("# ours\r\nnet.slp.MTU = 1400\r\nnet.slp.port = 5\r\n; theirs\r\nforeign = "
                                  "x\r\nnet.slp.MTU = 1400\r\nnet.slp.multicastTTL = 255\r\n"));
}

TEST_F(ServiceConfiguration, WithoutAnEffectiveChangeRestartsNothing) {
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(), IsEmpty());
  EXPECT_THAT(scripted_slp::CallsButProperties(),
              ElementsAre("SLPClose(#2)", "SLPOpen(en,0)=#3", "SLPClose(#3)", "SLPOpen(en,0)=#4"));
}

TEST_F(ServiceConfiguration, WithAnEffectiveChangeRestartsTheDaemonOnceAndRenewsTheServices) {
  Registered();
  FileSays("net.slp.MTU", "1000");
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_EQ(services.CountCalls("ControlService"), 1U);
  EXPECT_EQ(services.CountCalls("StartService"), 1U);
  EXPECT_EQ(Registrations(), 1U);
}

TEST_F(ServiceConfiguration, ANotEditableChangeRestartsNothing) {
  FileSays("net.slp.checkSourceAddr", "false");
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_THAT(services.Calls(), IsEmpty());
}

TEST_F(ServiceConfiguration, ClosesTheResidentHandleBeforeItWrites) {
  std::string at_close = "unset";
  Next(Function::kClose, scripted_slp::Runs([&] { at_close = folder.Read("slp.conf"); }));
  std::string at_open;
  Next(Function::kOpen, scripted_slp::Runs([&] { at_open = folder.Read("slp.conf"); }));
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_EQ(at_close, "");
  EXPECT_NE(at_open, "");
}

TEST_F(ServiceConfiguration, InitialisesACoreThatIsNot) {
  CKelSLPImpl::Shutdown();
  scripted_slp::ForgetCalls();
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_EQ(scripted_slp::Calls("SLPOpen").size(), 4U);
}

TEST_F(ServiceConfiguration, ReportsACoreThatCannotBeInitialised) {
  CKelSLPImpl::Shutdown();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
              SameResult(SResult(SResult::ERR_BASIC_NETWORK_INIT_FAILED, "",
                                 kAgentName + "SetSLPServiceConfig kelsd::CKelSLPImpl::InitializeInternal "
                                              "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_EQ(folder.Read("slp.conf"), "");
}

TEST_F(ServiceConfiguration, ReportsAFailedInitialisationAfterTheWriting) {
  FileSays("net.slp.MTU", "1000");
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
              SameResult(SResult(SResult::ERR_BASIC_NETWORK_INIT_FAILED, "",
                                 kAgentName + "SetSLPServiceConfig kelsd::CKelSLPImpl::InitializeInternal "
                                              "kelsd::CKelSLPImpl::OpenSLPHandle SLPOpen")));
  EXPECT_NE(folder.Read("slp.conf"), "");
  EXPECT_THAT(services.Calls(), IsEmpty());
}

TEST_F(ServiceConfiguration, AFileThatSomebodyElseWritesFailsInTimeAndLeavesAnInitialisedCore) {
  LockFile();
  FileSays("net.slp.MTU", "1000");
  EXPECT_THAT(
      agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
      SameResult(SResult(SResult::ERR_CONF_OPEN, folder.Path("slp.conf"),
                         kAgentName + "SetSLPServiceConfig " + kAgentName + "SetSLPServiceConfigInternal ")));
  EXPECT_THAT(WaitedMilliseconds(), TwoToThreeSeconds());
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(services.Calls(), IsEmpty());
}

TEST_F(ServiceConfiguration, OfTwoFailuresTheWritingsIsReported) {
  LockFile();
  Next(Function::kOpen, Returns(SLP_NETWORK_INIT_FAILED));
  EXPECT_THAT(
      agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
      SameResult(SResult(SResult::ERR_CONF_OPEN, folder.Path("slp.conf"),
                         kAgentName + "SetSLPServiceConfig " + kAgentName + "SetSLPServiceConfigInternal ")));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_THAT(services.Calls(), IsEmpty());
}

TEST_F(ServiceConfiguration, SettingTurnsExceptionsIntoResultsAndUndoesEverything) {
  Next(Function::kOpen, scripted_slp::Throws(std::runtime_error("broken")));
  const SResult broken(SResult::ERR_BASIC_API, "broken", kAgentName + "SetSLPServiceConfig ");
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(broken));
  EXPECT_FALSE(CKelSLPImpl::IsInitialized());
  EXPECT_NE(folder.Read("slp.conf"), "");
  // Neither locked nor broken for good.
  std::async(std::launch::async, [&] {
    EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  }).get();
}

TEST_F(ServiceConfiguration, SettingSurvivesEveryFailedAllocation) {
  const std::string before = "# ours\nnet.slp.MTU = 1\n";
  folder.Write("slp.conf", before);
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  const std::string after = folder.Read("slp.conf");
  folder.Write("slp.conf", before);
  const CKelSLPServiceConfig config;
  FailEachAllocation([&] { return agent.SetSLPServiceConfig(config); },
                     [&](const SResult& result) {
                       EXPECT_THAT(result.GetErrorCode(),
                                   AnyOf(SResult::ERR_OUT_OF_MEMORY, SResult::ERR_SUCCESS));
                       EXPECT_THAT(folder.Read("slp.conf"), AnyOf(before, after));
                       if (result.IsOk()) {
                         EXPECT_EQ(folder.Read("slp.conf"), after);
                       }
                       EXPECT_EQ(services.OpenHandles(), 0);
                       EXPECT_EQ(scripted_slp::OutstandingMemory(), 0);
                       EXPECT_THAT(CKelSLPImpl::Initialize(), SameResult(kSuccess));
                       EXPECT_EQ(scripted_slp::OpenHandles(), 1);
                       folder.Write("slp.conf", before);
                     });
  EXPECT_EQ(folder.Read("slp.conf"), after);
}

TEST_F(ServiceConfiguration, ReportsAMissingVariable) {
  ClearEnvironment("OpenSLPConfig");
  EXPECT_THAT(
      agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
      SameResult(MissingVariable("SetSLPServiceConfig " + kAgentName + "SetSLPServiceConfigInternal")));
}

TEST_F(ServiceConfiguration, CreatesAMissingFileWithItsFolders) {
  // The SLP library hasn't seen the variable yet.
  SetEnvironment("OpenSLPConfig", folder.Path("one/two/slp.conf"));
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_THAT(folder.Read("one/two/slp.conf"), testing::HasSubstr("net.slp.useScopes = DEFAULT\r\n"));
}

TEST_F(ServiceConfiguration, ReportsAFolderThatCannotBeCreated) {
  folder.Write("file", "");
  SetEnvironment("OpenSLPConfig", folder.Path("file/slp.conf"));
  EXPECT_THAT(
      agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
      SameResult(SResult(SResult::ERR_CONF_DIR_CREATE,
                         "Cannot create 'OpenSLPConfig' directory '" + folder.Path("file") + "'.",
                         kAgentName + "SetSLPServiceConfig " + kAgentName + "SetSLPServiceConfigInternal " +
                             kAgentName + "ValidateSLPEnvironmentConfigFile")));
  EXPECT_TRUE(CKelSLPImpl::IsInitialized());
}

TEST_F(ServiceConfiguration, AFailedRestartLeavesTheFileWritten) {
  FileSays("net.slp.MTU", "1000");
  services.Fail(ServiceCall::kStart);
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()),
              SameResult(SResult(SResult::ERR_SLPD_START, "Refused: StartService.",
                                 kAgentName + "SetSLPServiceConfig " + kAgentName + "RestartSLPD " +
                                     kAgentName + "StartSLPD StartService")));
  EXPECT_NE(folder.Read("slp.conf"), "");
}

TEST_F(ServiceConfiguration, TheCoreLockIsFreeWhileTheDaemonIsRestarted) {
  FileSays("net.slp.MTU", "1000");
  bool initialized = false;
  services.OnStart([&] {
    initialized = std::async(std::launch::async, [] { return CKelSLPImpl::IsInitialized(); }).get();
  });
  EXPECT_THAT(agent.SetSLPServiceConfig(CKelSLPServiceConfig()), SameResult(kSuccess));
  EXPECT_TRUE(initialized);
}

TEST_F(ServiceConfiguration, SettingWaitsForSearches) {
  std::shared_lock search(CKelSLPImpl::CoreLock());
  std::future<SResult> setting =
      std::async(std::launch::async, [&] { return agent.SetSLPServiceConfig(CKelSLPServiceConfig()); });
  // Long enough for a call that doesn't wait to have written the file.
  EXPECT_EQ(setting.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
  EXPECT_EQ(folder.Read("slp.conf"), "");
  search.unlock();
  EXPECT_THAT(setting.get(), SameResult(kSuccess));
  EXPECT_NE(folder.Read("slp.conf"), "");
}

// Scopes.

TEST_F(ServiceConfiguration, SetsTheScopesOnly) {
  folder.Write("slp.conf", "# c\nnet.slp.useScopes = X\nforeign=1");
  EXPECT_THAT(agent.SetLocalScopes({" tamro ", "LAB"}), SameResult(kSuccess));
  EXPECT_EQ(folder.Read("slp.conf"), "# c\r\nnet.slp.useScopes = TAMRO,LAB\r\nforeign = 1\r\n");
  EXPECT_THAT(agent.SetLocalScopes({}), SameResult(kSuccess));
  EXPECT_EQ(folder.Read("slp.conf"), "# c\r\nnet.slp.useScopes = DEFAULT\r\nforeign = 1\r\n");
  EXPECT_THAT(scripted_slp::Calls(), IsEmpty());
}

TEST_F(ServiceConfiguration, SettingTheScopesSurvivesEveryFailedAllocation) {
  const std::string before = "net.slp.useScopes = X\n";
  const std::string after = "net.slp.useScopes = TAMRO\r\n";
  folder.Write("slp.conf", before);
  const std::vector<std::string> scopes{"tamro"};
  FailEachAllocation([&] { return agent.SetLocalScopes(scopes); },
                     [&](const SResult& result) {
                       EXPECT_EQ(result.GetErrorCode(), SResult::ERR_OUT_OF_MEMORY);
                       EXPECT_EQ(folder.Read("slp.conf"), before);
                     });
  EXPECT_EQ(folder.Read("slp.conf"), after);
}

TEST_F(ServiceConfiguration, ReportsAFileOfTheScopesThatSomebodyElseWrites) {
  LockFile();
  EXPECT_THAT(
      agent.SetLocalScopes({"tamro"}),
      SameResult(SResult(SResult::ERR_CONF_OPEN, folder.Path("slp.conf"), kAgentName + "SetLocalScopes ")));
  EXPECT_THAT(WaitedMilliseconds(), TwoToThreeSeconds());
}

}  // namespace
}  // namespace kelsd
