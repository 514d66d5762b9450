#include "slpd/server/configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd_server/temporary_folder.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class ConfigurationTest : public testing::Test {
 protected:
  ConfigurationTest() { sources_.files = {}; }

  Configuration Read() {
    problems_.clear();
    return ReadConfiguration(sources_, problems_);
  }

  TemporaryFolder folder_;
  ConfigurationSources sources_;
  std::vector<std::string> problems_;
};

TEST_F(ConfigurationTest, LaterSourcesWinKeyByKey) {
  sources_.files.global =
      folder_.Write("global", "net.slp.port = 1\nnet.slp.MTU = 1000\nnet.slp.useScopes = a\n");
  sources_.files.environment = folder_.Write("environment", "net.slp.MTU = 1100\nnet.slp.useScopes = b\n");
  sources_.overrides = {{"net.slp.useScopes", "c"}};
  const Configuration configuration = Read();
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_EQ(configuration.properties.GetInt("net.slp.port"), 1);
  EXPECT_EQ(configuration.settings.mtu, 1100U);
  EXPECT_THAT(configuration.settings.scopes, ElementsAre("c"));
}

TEST_F(ConfigurationTest, AMissingGlobalFileIsNothingAMissingNamedOneIsAProblem) {
  sources_.files.global = folder_.File("none");
  Read();
  EXPECT_THAT(problems_, IsEmpty());
  sources_.files.environment = folder_.File("missing");
  Read();
  EXPECT_THAT(problems_, ElementsAre(folder_.File("missing") + ": cannot be opened"));
}

TEST_F(ConfigurationTest, AFileThatIsThereButCannotBeReadIsAProblem) {
  // As a folder, which nobody can read as a file, the administrator neither.
  sources_.files.global = folder_.File("");
  EXPECT_EQ(Read().settings.registration_file, "");
  EXPECT_THAT(problems_, ElementsAre(folder_.File("") + ": cannot be opened"));
}

TEST_F(ConfigurationTest, AValueThatIsNotAllowedIsToldWithFileAndLine) {
  sources_.files.environment =
      folder_.Write("slp.conf", "# comment\nnet.slp.port = many\nnet.slp.locale = de\n");
  const Configuration configuration = Read();
  EXPECT_THAT(problems_, ElementsAre(StartsWith(folder_.File("slp.conf") + ":2: net.slp.port must be ")));
  EXPECT_EQ(configuration.properties.GetInt("net.slp.port"), 427);
  EXPECT_EQ(configuration.settings.language, "de");
}

TEST_F(ConfigurationTest, WhatIsNoTrustedNetworkIsTold) {
  sources_.overrides = {{"net.slp.trustedNetworks", "192.0.2.0/24, 10.0.0.0/33, example.org"}};
  const Configuration configuration = Read();
  EXPECT_THAT(problems_, ElementsAre("net.slp.trustedNetworks: \"10.0.0.0/33\" is no network",
                                     "net.slp.trustedNetworks: \"example.org\" is no network"));
  EXPECT_TRUE(configuration.trusted_networks.Contains(asio::ip::make_address("192.0.2.9")));
}

TEST_F(ConfigurationTest, TheRegistrationFileIsTheFirstOneThatIsNamed) {
  EXPECT_EQ(Read().settings.registration_file, "");
  sources_.default_registration_file = folder_.File("default.reg");
  EXPECT_EQ(Read().settings.registration_file, "") << "it does not exist";
  folder_.Write("default.reg", "");
  EXPECT_EQ(Read().settings.registration_file, folder_.File("default.reg"));
  sources_.overrides = {{"net.slp.serializedRegURL", "file:///somewhere/slp.reg"}};
  EXPECT_EQ(Read().settings.registration_file, "/somewhere/slp.reg");
  sources_.registration_file = "given.reg";
  EXPECT_EQ(Read().settings.registration_file, "given.reg");
}

}  // namespace
}  // namespace slp
