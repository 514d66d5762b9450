#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/tool_fixture.h"
#include "support/fake_platform/environment.h"
#include "support/free_port.h"
#include "support/slp_peer/slp_peer.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ToolDoctor : public OwnDaemonTest {
 protected:
  // The port of a test deviates always.
  std::string PortProblem() const {
    return "problem  settings as required: The port should be 427, but is currently set to " +
           std::to_string(port_) +
           ".\n"
           "         advice: Correct net.slp.port in the configuration file, then: kelsd slpd restart\n";
  }
};

TEST_F(ToolDoctor, FindsARunningDaemonWell) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  const ProgramRun run = RunTool({"doctor", "--timeout", "3000"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.output,
            "ok       library initialised\n"
            "ok       configuration file named: " +
                configuration_file() + "\nok       configuration file found: " + configuration_file() +
                "\nok       configuration file used\n"
                "ok       properties readable\n" +
                PortProblem() +
                "ok       slpd running\n"
                "ok       slpd answers by unicast: service:service-agent://127.0.0.1\n"
                "ok       slpd answers by multicast: service:service-agent://127.0.0.1\n");
}

TEST_F(ToolDoctor, TellsHowToStartTheDaemon) {
  const ProgramRun run = RunTool({"doctor"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.output, EndsWith(PortProblem() + "problem  slpd running: slpd does not run on this host.\n"
                                                   "         advice: Start it: kelsd slpd start\n"));
  const json answer = RunForJson({"doctor"});
  EXPECT_EQ(answer["findings"].back(), (json{{"check", "slpd running"},
                                             {"ok", false},
                                             {"detail", "slpd does not run on this host."},
                                             {"advice", "Start it: kelsd slpd start"}}));
}

// Nobody has set the log to be overwritten.
TEST_F(ToolDoctor, GivesAdviceThatMendsWhatItFinds) {
  folder_.Write("slp.conf", "net.slp.port = " + std::to_string(port_) + "\nnet.slp.interfaces = 127.0.0.1\n");
  EXPECT_THAT(RunTool({"doctor"}).output,
              HasSubstr("\n         advice: Change it: kelsd config set net.slp.appendLog=false\n"));
  ASSERT_EQ(RunTool({"config", "set", "net.slp.appendLog=false"}).status, 0);
  EXPECT_THAT(RunTool({"doctor"}).output, Not(HasSubstr("appendLog")));
}

TEST_F(ToolDoctor, TellsOfPropertiesAndDeviations) {
  folder_.Write("slp.conf", "net.slp.DAHeartBeat = 100\nnet.slp.traceMsg = true\n");
  const ProgramRun run = RunTool({"doctor"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.output, HasSubstr("Directory agent heart beat is too small (must be at least 2000): 100."));
  EXPECT_THAT(run.output, HasSubstr("\n         advice: Correct the value in the configuration file; until "
                                    "then the default counts.\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("ok       properties readable")));
  EXPECT_THAT(run.output, HasSubstr("problem  settings as required: Logging of verbose message tracing is "
                                    "enabled (should be disabled).\n"
                                    "         advice: Change it: kelsd config set net.slp.traceMsg=false\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("The port should be")));
}

TEST_F(ToolDoctor, FindsAUnicastThatNobodyAnswers) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  folder_.Write("slp.conf", "net.slp.port = " + std::to_string(slp::support::FreePort()) +
                                "\nnet.slp.interfaces = 127.0.0.1\n");
  const ProgramRun run = RunTool({"doctor", "--timeout", "1252"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.output, HasSubstr("problem  slpd answers by unicast: "));
  EXPECT_THAT(run.output, HasSubstr("problem  slpd answers by multicast: Nobody answered.\n"));
}

TEST_F(ToolDoctor, TellsTheOwnHostsAnswerFromOthers) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  // The daemon stays where it is; at the new port there is a stranger that says it is another host.
  const slp::support::SlpPeer stranger([](const slp::support::PeerRequest& request) {
    slp::SaAdvert advert;
    advert.url = "service:service-agent://192.0.2.7";
    advert.scopes = "DEFAULT";
    return std::vector<slp::support::PeerReply>{{slp::support::EncodedReplyTo(request, advert)}};
  });
  folder_.Write("slp.conf",
                "net.slp.port = " + std::to_string(stranger.port()) + "\nnet.slp.interfaces = 127.0.0.1\n");
  const ProgramRun run = RunTool({"doctor", "--timeout", "3000"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.output,
              EndsWith("\nok       slpd answers by unicast: service:service-agent://192.0.2.7\n"
                       "problem  slpd answers by multicast: Only other hosts answered: "
                       "service:service-agent://192.0.2.7.\n"
                       "         advice: The slpd of this host is not found by the others. Check that its "
                       "firewall lets the daemon's port in by UDP, and the addresses in net.slp.interfaces, "
                       "then: kelsd slpd restart\n"));
}

TEST_F(ToolDoctor, TellsThatTheFileCannotBeUsed) {
  if (EnvironmentKeepsEmptyValues()) {
    SetEnvironment("OpenSLPConfig", "");
    EXPECT_THAT(RunTool({"doctor"}).output,
                HasSubstr("problem  configuration file named: The variable OpenSLPConfig is empty.\n"));
  }
  const std::string folder = std::filesystem::path(configuration_file()).parent_path().string();
  SetEnvironment("OpenSLPConfig", folder);
  EXPECT_THAT(RunTool({"doctor"}).output,
              HasSubstr("problem  configuration file found: " + folder +
                        " is no file.\n         advice: Let the variable OpenSLPConfig name a file.\n"));
  SetEnvironment("OpenSLPConfig", configuration_file());
}

TEST_F(ToolDoctor, TellsThatTheFileIsMissingAndLeavesItSo) {
  std::filesystem::remove(configuration_file());
  const ProgramRun missing = RunTool({"doctor"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_THAT(missing.output,
              HasSubstr("problem  configuration file found: " + configuration_file() +
                        " does not exist.\n         advice: The first registration creates it"));
  EXPECT_THAT(missing.output, HasSubstr("\nok       properties readable\nok       settings as required\n"));
  EXPECT_FALSE(std::filesystem::exists(configuration_file()));

  EXPECT_THAT(
      RunForJson({"doctor"})["findings"],
      testing::Contains(json{{"check", "configuration file found"},
                             {"ok", false},
                             {"detail", configuration_file() + " does not exist."},
                             {"advice",
                              "The first registration creates it, and so does 'kelsd config show'; or "
                              "correct the variable OpenSLPConfig."}}));

  ClearEnvironment("OpenSLPConfig");
  const ProgramRun unnamed = RunTool({"doctor"});
  EXPECT_EQ(unnamed.status, 1);
  EXPECT_THAT(unnamed.output,
              HasSubstr("problem  configuration file named: The variable OpenSLPConfig is not set.\n"
                        "         advice: Set the environment variable OpenSLPConfig"));
}

}  // namespace
}  // namespace kelsd::integration
