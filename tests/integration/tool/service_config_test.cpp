#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "integration/tool/own_daemon_fixture.h"
#include "integration/tool/tool_fixture.h"
#include "support/fake_platform/environment.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using ToolServiceConfig = OwnDaemonTest;

TEST_F(ToolServiceConfig, ShowsTheDaemonsSettings) {
  const json answer = RunForJson({"config", "show"});
  ASSERT_EQ(answer["settings"].size(), 30U);
  EXPECT_EQ(answer["settings"][6], (json{{"property", "net.slp.interfaces"},
                                         {"label", "Interfaces"},
                                         {"value", {"127.0.0.1"}},
                                         {"isStandardDefault", false}}));
  EXPECT_EQ(answer["settings"][13], (json{{"property", "net.slp.isDA"},
                                          {"label", "Is Directory Agent"},
                                          {"value", false},
                                          {"isStandardDefault", true}}));
  EXPECT_THAT(RunTool({"config", "show"}).output,
              AllOf(HasSubstr("\n*  net.slp.interfaces "), HasSubstr("\n   net.slp.isDA ")));
}

TEST_F(ToolServiceConfig, GetsOneSetting) {
  EXPECT_EQ(RunTool({"config", "get", "net.slp.interfaces"}).output, "127.0.0.1\n");
  EXPECT_EQ(RunTool({"config", "get", "port"}).output, std::to_string(port_) + "\n");
  EXPECT_EQ(RunTool({"config", "get", "maxResults", "--client"}).output, "-1\n");
  EXPECT_EQ(RunForJson({"config", "get", "DAHeartBeat"})["value"], 10800);
  const ProgramRun other = RunTool({"config", "get", "maxResults"});
  EXPECT_EQ(other.status, 2);
  EXPECT_EQ(other.error, "kelsd: 'maxResults' is no setting of the service configuration\n");
}

TEST_F(ToolServiceConfig, SetsEveryKindOfValueAndRestartsTheDaemon) {
  ASSERT_EQ(RunTool({"slpd", "start"}).status, 0);
  const auto before = DaemonPid();
  const ProgramRun run =
      RunTool({"config", "set", "useScopes=DEFAULT,Lab", "net.slp.DAHeartBeat=9000",
               "unicastTimeouts=300,600", "traceReg=true", "broadcastAddr=127.255.255.255"});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.output, "Set in " + configuration_file() + ".\n");
  EXPECT_NE(DaemonPid(), before);
  EXPECT_EQ(RunTool({"config", "get", "useScopes"}).output, "DEFAULT, LAB\n");
  EXPECT_EQ(RunTool({"config", "get", "DAHeartBeat"}).output, "9000\n");
  EXPECT_EQ(RunTool({"config", "get", "unicastTimeouts"}).output, "300, 600\n");
  EXPECT_EQ(RunTool({"config", "get", "traceReg"}).output, "true\n");
  EXPECT_EQ(RunTool({"config", "get", "broadcastAddr"}).output, "127.255.255.255\n");
  EXPECT_THAT(folder_.Read("slp.conf"),
              StartsWith("# of a test\r\nnet.slp.port = " + std::to_string(port_) + "\r\n"));
}

TEST_F(ToolServiceConfig, RefusesBadValuesAndWritesNothing) {
  struct Row {
    const char* assignment;
    const char* said;
  };
  const std::string before = folder_.Read("slp.conf");
  for (const Row& row :
       {Row{"DAHeartBeat=soon", "'DAHeartBeat' cannot be set: 'soon' is no whole number"},
        Row{"isDA=yes", "'isDA' cannot be set: 'yes' is neither true nor false"},
        Row{"unicastTimeouts=300,x", "'unicastTimeouts' cannot be set: 'x' is no whole number"},
        Row{"multicastTTL=256", "'multicastTTL' cannot be set: "},
        Row{"DAHeartBeat=1999", "'DAHeartBeat' cannot be set: "}}) {
    const ProgramRun run = RunTool({"config", "set", "traceReg=true", row.assignment});
    EXPECT_EQ(run.status, 2) << row.assignment;
    EXPECT_EQ(run.output, "") << row.assignment;
    EXPECT_THAT(run.error, HasSubstr(row.said));
  }
  EXPECT_EQ(folder_.Read("slp.conf"), before);
}

TEST_F(ToolServiceConfig, RefusesToReplaceValuesThatItCouldNotRead) {
  const std::string file = "net.slp.port = " + std::to_string(port_) +
                           "\nnet.slp.interfaces = 127.0.0.1\nnet.slp.DAHeartBeat = 100\n"
                           "net.slp.unicastMaximumWait = 2\n";
  folder_.Write("slp.conf", file);
  const ProgramRun none = RunTool({"config", "set", "traceReg=true"});
  EXPECT_EQ(none.status, 3);
  EXPECT_EQ(none.output, "");
  EXPECT_THAT(none.error,
              AllOf(HasSubstr("Directory agent heart beat is too small (must be at least 2000): 100."),
                    HasSubstr("The unicast maximum wait is too small (must be at least 501): 2."),
                    HasSubstr("kelsd: nothing was set, as it would replace the values above by defaults")));
  EXPECT_EQ(folder_.Read("slp.conf"), file);

  const ProgramRun one = RunTool({"config", "set", "traceReg=true", "DAHeartBeat=9000"});
  EXPECT_EQ(one.status, 3);
  EXPECT_THAT(one.error, Not(HasSubstr("Directory agent heart beat")));
  EXPECT_EQ(folder_.Read("slp.conf"), file);

  const ProgramRun all = RunTool({"config", "set", "traceReg=true", "DAHeartBeat=9000",
                                  "unicastMaximumWait=3000", "unicastTimeouts=700"});
  EXPECT_EQ(all.status, 0) << all.error;
  EXPECT_EQ(RunTool({"config", "get", "DAHeartBeat"}).output, "9000\n");
  EXPECT_EQ(RunTool({"config", "get", "unicastMaximumWait"}).output, "3000\n");
}

TEST_F(ToolServiceConfig, RefusesToReplaceAWaitOrItsTimeoutsByTheWay) {
  for (const std::string values : {"net.slp.unicastMaximumWait = 400\nnet.slp.unicastTimeouts = 100,200\n",
                                   "net.slp.unicastMaximumWait = 8000\nnet.slp.unicastTimeouts = 500,50\n"}) {
    const std::string file = "net.slp.port = " + std::to_string(port_) + "\n" + values;
    folder_.Write("slp.conf", file);
    for (const char* assignment : {"unicastMaximumWait=9000", "unicastTimeouts=500,1000"}) {
      const ProgramRun run = RunTool({"config", "set", assignment});
      EXPECT_EQ(run.status, 3) << assignment;
      EXPECT_THAT(run.error, HasSubstr("kelsd: nothing was set, as it would replace the values above"));
      EXPECT_EQ(folder_.Read("slp.conf"), file);
    }
  }
}

TEST_F(ToolServiceConfig, SetsBesideBadValuesThatItDoesNotWrite) {
  folder_.Write("slp.conf", "net.slp.port = " + std::to_string(port_) +
                                "\nnet.slp.interfaces = 127.0.0.1\n"
                                "net.slp.DAActiveDiscoveryInterval = soon\n");
  const ProgramRun run = RunTool({"config", "set", "traceReg=true"});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_THAT(folder_.Read("slp.conf"), HasSubstr("\r\nnet.slp.DAActiveDiscoveryInterval = soon\r\n"));
  EXPECT_EQ(RunTool({"config", "get", "traceReg"}).output, "true\n");
}

TEST_F(ToolServiceConfig, StartsTheDaemonThatDoesNotRun) {
  ASSERT_EQ(RunTool({"slpd", "status"}).status, 1);
  EXPECT_EQ(RunTool({"config", "set", "traceReg=true"}).status, 0);
  EXPECT_EQ(RunTool({"slpd", "status"}).status, 0);
}

TEST_F(ToolServiceConfig, TakesTheFileWithoutTheBlanksAroundItsName) {
  SetEnvironment("OpenSLPConfig", " " + configuration_file() + "\t");
  EXPECT_EQ(RunTool({"config", "path"}).output, configuration_file() + "\n");
  EXPECT_EQ(RunTool({"config", "get", "port"}).output, std::to_string(port_) + "\n");
  EXPECT_THAT(RunTool({"doctor"}).output,
              HasSubstr("\nok       configuration file found: " + configuration_file() + "\n"));
  SetEnvironment("OpenSLPConfig", configuration_file());
}

TEST_F(ToolServiceConfig, TakesAWaitAndItsTimeoutsInAnyOrder) {
  EXPECT_EQ(RunForJson({"config", "set", "unicastTimeouts=6000,7000", "unicastMaximumWait=9000"}),
            (json{{"set", {"unicastTimeouts=6000,7000", "unicastMaximumWait=9000"}},
                  {"file", configuration_file()}}));
  EXPECT_EQ(RunTool({"config", "get", "unicastTimeouts"}).output, "6000, 7000\n");
}

TEST_F(ToolServiceConfig, TellsProgramsOfValuesThatItCouldNotRead) {
  folder_.Write("slp.conf", "net.slp.DAHeartBeat = 100\n");
  const ProgramRun run = RunTool({"config", "validate", "--json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "");
  const json problems = json::parse(run.output)["problems"];
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0]["detail"], "Directory agent heart beat is too small (must be at least 2000): 100.");
  EXPECT_EQ(RunForJson({"config", "show"})["problems"], problems);
  EXPECT_EQ(RunForJson({"config", "get", "DAHeartBeat"})["problems"], problems);
}

TEST_F(ToolServiceConfig, KeepsAClientConfigurationOutOfTheFile) {
  constexpr const char* kNote =
      "Applied to this process only, which ends now: a client configuration is written to no file. To make "
      "it "
      "permanent, let the application pass it to CKelSLPClient::SetSLPClientConfig each time it starts; "
      "'kelsd "
      "find' takes --timeout and --interface.";
  const std::string before = folder_.Read("slp.conf");
  const ProgramRun run = RunTool({"config", "set", "--client", "multicastTimeouts=400,700", "maxResults=20"});
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.error, "");
  EXPECT_THAT(run.output, AllOf(HasSubstr("\n*  net.slp.maxResults              20 "),
                                HasSubstr("\n*  net.slp.multicastTimeouts       400, 700 "),
                                testing::EndsWith("\n" + std::string(kNote) + "\n")));

  const json answer = RunForJson({"config", "set", "--client", "net.slp.MTU=1000"});
  EXPECT_EQ(answer["set"], (json{"net.slp.MTU=1000"}));
  EXPECT_EQ(answer["file"], nullptr);
  EXPECT_EQ(answer["note"], kNote);
  EXPECT_EQ(answer["problems"], json::array());
  EXPECT_EQ(answer["settings"].size(), 18U);
  EXPECT_EQ(
      answer["settings"][3],
      (json{{"property", "net.slp.MTU"}, {"label", "MTU"}, {"value", 1000}, {"isStandardDefault", false}}));
  EXPECT_EQ(RunTool({"config", "get", "--client", "MTU"}).output, "1400\n");
  EXPECT_EQ(folder_.Read("slp.conf"), before);
}

TEST_F(ToolServiceConfig, RefusesBadClientValues) {
  const ProgramRun run = RunTool({"config", "set", "--client", "multicastMaximumWait=500"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(
      run.error,
      "kelsd: 'multicastMaximumWait' cannot be set: The multicast maximum wait is too small (must be at "
      "least 501): 500.\n");
}

TEST_F(ToolServiceConfig, ListsDeviationsOneALine) {
  folder_.Write("slp.conf", "net.slp.port = " + std::to_string(port_) +
                                "\nnet.slp.traceReg = true\nnet.slp.appendLog = false\n");
  const ProgramRun run = RunTool({"config", "validate"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.output,
            "net.slp.traceReg: Logging of service registration status is enabled (should be disabled).\n"
            "net.slp.port: The port should be 427, but is currently set to " +
                std::to_string(port_) + ".\n");
  EXPECT_EQ(
      RunForJson({"config", "validate", "--client"})["deviations"],
      (json{{{"property", "net.slp.port"},
             {"text", "The port should be 427, but is currently set to " + std::to_string(port_) + "."}}}));

  folder_.Write("slp.conf", "net.slp.appendLog = false\n");
  const ProgramRun well = RunTool({"config", "validate"});
  EXPECT_EQ(well.status, 0) << well.output;
  EXPECT_EQ(well.output, "");
}

TEST_F(ToolServiceConfig, NamesTheFile) {
  EXPECT_EQ(RunTool({"config", "path"}).output, configuration_file() + "\n");
  EXPECT_EQ(RunForJson({"config", "path"}), (json{{"path", configuration_file()}, {"exists", true}}));
  ClearEnvironment("OpenSLPConfig");
  const ProgramRun run = RunTool({"config", "path"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.error,
            "kelsd: The OpenSLP environment variable 'OpenSLPConfig' is not set. Code: 42.\n"
            "hint: Set the environment variable OpenSLPConfig to the configuration file, or name it with "
            "--config FILE\n");
  SetEnvironment("OpenSLPConfig", configuration_file());
}

}  // namespace
}  // namespace kelsd::integration
