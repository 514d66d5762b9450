#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "foundation/text.h"
#include "platform/file_system.h"
#include "service_fixture.h"

namespace kelsd {
namespace {

const std::string kName = "kelsd::CKelSLPServiceImpl::ValidateSLPEnvironmentConfigFile";

class ConfigFileLocation : public ServiceFixture {};

TEST_F(ConfigFileLocation, ReadsTheVariable) {
  bool found = false;
  SetEnvironment("OpenSLPConfig", " some where ");
  EXPECT_EQ(CKelSLPServiceImpl::GetOpenSLPConfigVariable(found), " some where ");
  EXPECT_TRUE(found);
  ClearEnvironment("OpenSLPConfig");
  found = false;
  EXPECT_EQ(CKelSLPServiceImpl::GetOpenSLPConfigVariable(found), "");
  EXPECT_FALSE(found);
}

TEST_F(ConfigFileLocation, AnEmptyVariableCountsAsExisting) {
  if (!EnvironmentKeepsEmptyValues()) {
    GTEST_SKIP() << "This system's variables are never empty.";
  }
  bool found = false;
  SetEnvironment("OpenSLPConfig", "");
  EXPECT_EQ(CKelSLPServiceImpl::GetOpenSLPConfigVariable(found), "");
  EXPECT_TRUE(found);
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(),
              SameResult(SResult(SResult::ERR_CONF_CREATE, "Cannot create 'OpenSLPConfig' file ''.", kName)));
}

TEST_F(ConfigFileLocation, TrimsTheNameOfTheFile) {
  SetEnvironment("OpenSLPConfig", " \t some where\n");
  std::string name;
  EXPECT_THAT(agent.GetSLPEnvConfigFileName(name), SameResult(kSuccess));
  EXPECT_EQ(name, "some where");
}

TEST_F(ConfigFileLocation, AdvisesWhenThereIsNoVariable) {
  ClearEnvironment("OpenSLPConfig");
  std::string name = "before";
  const std::string advice =
      "Create an environment variable with name 'OpenSLPConfig' that contains the path to the SLP "
      "configuration file e.g. '";
  const std::string in_folder = platform::EnvironmentConfigFileIn();
  EXPECT_THAT(agent.GetSLPEnvConfigFileName(name),
              SameResult(SResult(SResult::ERR_ENV_NOT_SET, advice + "COMMON" + in_folder + "'.",
                                 "kelsd::CKelSLPServiceImpl::GetSLPEnvConfigFileName")));
  EXPECT_EQ(name, "before");
  folders.common_data.reset();
  EXPECT_THAT(
      agent.ValidateSLPEnvironmentConfigFile(),
      SameResult(SResult(SResult::ERR_ENV_NOT_SET, advice + platform::FallbackCommonData() + in_folder + "'.",
                         kName + " kelsd::CKelSLPServiceImpl::GetSLPEnvConfigFileName")));
}

TEST_F(ConfigFileLocation, ProposesAFileInTheCommonFolder) {
  EXPECT_EQ(agent.GetDefaultEnvConfigFileName(), std::string("COMMON") + platform::EnvironmentConfigFileIn());
  folders.common_data.reset();
  EXPECT_EQ(agent.GetDefaultEnvConfigFileName(),
            std::string(platform::FallbackCommonData()) + platform::EnvironmentConfigFileIn());
}

TEST_F(ConfigFileLocation, TheMainFileIsTheSlpLibrarysElseInTheSystemsFolder) {
  scripted_slp::SetFileProperty("net.slp.OpenSLPConfigFile", "main.conf");
  EXPECT_EQ(agent.GetSLPConfigFileName(), "main.conf");
  scripted_slp::RemoveProperty("net.slp.OpenSLPConfigFile");
  EXPECT_EQ(agent.GetSLPConfigFileName(), std::string("SYSTEM") + platform::MainConfigFileIn());
  folders.system.reset();
  EXPECT_EQ(agent.GetSLPConfigFileName(),
            std::string(platform::FallbackSystem()) + platform::MainConfigFileIn());
}

TEST_F(ConfigFileLocation, AcceptsTheFileThatTheSlpLibraryUses) {
  folder.Write("slp.conf", "net.slp.MTU = 1000");
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(), SameResult(kSuccess));
  EXPECT_EQ(folder.Read("slp.conf"), "net.slp.MTU = 1000");
}

TEST_F(ConfigFileLocation, ComparesWithoutRegardToLetterCaseAndWhiteSpace) {
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", " " + ToUpper(folder.Path("slp.conf")) + " ");
  SetEnvironment("OpenSLPConfig", " " + folder.Path("slp.conf") + "  ");
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(), SameResult(kSuccess));
}

TEST_F(ConfigFileLocation, CreatesTheFileWithItsFolders) {
  const std::string name = folder.Path("one/two/three/slp.conf");
  SetEnvironment("OpenSLPConfig", name);
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(),
              SameResult(SResult(SResult::ERR_RESTART_REQUIRED, "", kName)));
  EXPECT_TRUE(platform::FileExists(name));
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", name);
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(), SameResult(kSuccess));
}

TEST_F(ConfigFileLocation, WantsAnotherStartWhenTheSlpLibraryUsesAnotherFileOrNone) {
  const SResult restart(SResult::ERR_RESTART_REQUIRED, "", kName);
  scripted_slp::SetFileProperty("net.slp.EnvConfigFile", folder.Path("other.conf"));
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(), SameResult(restart));
  scripted_slp::RemoveProperty("net.slp.EnvConfigFile");
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(), SameResult(restart));
}

TEST_F(ConfigFileLocation, ReportsAFolderThatCannotBeCreated) {
  folder.Write("file", "");
  SetEnvironment("OpenSLPConfig", folder.Path("file/one/slp.conf"));
  EXPECT_THAT(agent.ValidateSLPEnvironmentConfigFile(),
              SameResult(SResult(SResult::ERR_CONF_DIR_CREATE,
                                 "Cannot create 'OpenSLPConfig' directory '" + folder.Path("file/one") + "'.",
                                 kName)));
}

TEST_F(ConfigFileLocation, ReportsAFileThatCannotBeCreated) {
  // There is a folder of that name.
  EXPECT_TRUE(platform::CreateFolder(folder.Path("taken")));
  SetEnvironment("OpenSLPConfig", folder.Path("taken"));
  EXPECT_THAT(
      agent.ValidateSLPEnvironmentConfigFile(),
      SameResult(SResult(SResult::ERR_CONF_CREATE,
                         "Cannot create 'OpenSLPConfig' file '" + folder.Path("taken") + "'.", kName)));
}

}  // namespace
}  // namespace kelsd
