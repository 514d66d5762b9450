#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "integration/library/library_fixture.h"
#include "integration/tool/tool_fixture.h"
#include "support/slpd_process/slpd_process.h"

namespace kelsd::integration {
namespace {

using nlohmann::json;
using support::ProgramRun;
using testing::HasSubstr;

constexpr const char* kServer = "service:zdrest.tamro:http://127.0.0.1:8080";

using ToolAttributes = ToolTest;
using ToolConfig = ToolTest;

TEST_F(ToolAttributes, PrintsATableForPeople) {
  const ProgramRun run = Run({"attributes", kServer});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.error, "");
  EXPECT_EQ(run.output,
            "ATTRIBUTE                   VALUE\n"
            "x-version                   4.2\n"
            "x-ip-addresses              10.0.0.1, 10.0.0.2, 10.0.0.3\n"
            "x-server-ns-name            ns1\n"
            "x-server-ns-port            8081\n"
            "x-server-name               srv1\n"
            "x-server-connection-status  connected\n"
            "x-server-ns-ips             10.0.0.8, 10.0.0.9\n");
}

TEST_F(ToolAttributes, PrintsTypedJsonForPrograms) {
  EXPECT_EQ(
      RunForJson({"attributes", "service:terminal.tamro:http://127.0.0.1:8070", "--address", "127.0.0.1"}),
      (json{{"url", "service:terminal.tamro:http://127.0.0.1:8070"},
            {"attributes",
             {{"x-version", "4.2"},
              {"x-ip-addresses", {"10.0.0.1"}},
              {"x-operation", "SERVER"},
              {"x-server-mode", "MAIN"},
              {"x-server-name", "srv1"},
              {"x-server-cluster-status", true}}}}));
}

TEST_F(ToolAttributes, ReadsOnlyTheTagsAskedFor) {
  EXPECT_EQ(RunForJson({"attributes", kServer, "--tag", "x-version", "--tag", "x-server-ns-port", "--address",
                        "127.0.0.1"})["attributes"],
            (json{{"x-version", "4.2"}, {"x-server-ns-port", 8081}}));
}

TEST_F(ToolAttributes, TakesTheUrlBehindEveryRepeatableOption) {
  EXPECT_EQ(RunForJson({"attributes", "--address", "127.0.0.1", "--tag", "x-version", kServer})["attributes"],
            (json{{"x-version", "4.2"}}));
  EXPECT_EQ(RunForJson({"attributes", "--address", "127.0.0.1", "--tag", "x-version", "--scope", "tamro",
                        kServer})["attributes"],
            (json{{"x-version", "4.2"}}));
}

TEST(ToolAttributesOfAStranger, ReachTheTerminalWithoutControlCharacters) {
  slp::support::SlpdOptions options;
  options.configuration = "net.slp.useScopes = TAMRO\n";
  options.registrations =
      RegistrationFile({{kServer, "tamro", {"x-version=4.2", "x-server-name=a\\1B[31mb\\0Ac\\7F"}}});
  slp::support::SlpdProcess daemon(options);
  ASSERT_TRUE(daemon.Running()) << daemon.Log();
  std::vector<std::string> arguments = {"attributes", kServer,    "--address",
                                        "127.0.0.1",  "--config", daemon.configuration_file()};
  const ProgramRun run = RunTool(arguments);
  EXPECT_EQ(run.status, 0) << run.error;
  EXPECT_THAT(run.output, HasSubstr("\nx-server-name  a\\x1B[31mb\\x0Ac\\x7F\n"));
  arguments.emplace_back("--json");
  EXPECT_EQ(json::parse(RunTool(arguments).output)["attributes"]["x-server-name"], "a\x1B[31mb\nc\x7F");
}

TEST_F(ToolAttributes, ExitsWith1WhenThereIsNothing) {
  const ProgramRun run =
      Run({"attributes", "service:zdrest.tamro:http://127.0.0.1:1", "--address", "127.0.0.1"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "No attributes found.\n");
}

TEST_F(ToolAttributes, ExitsWith2OnSomethingThatIsNoUrl) {
  const ProgramRun run = Run({"attributes", "zdrest"});
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.error, HasSubstr("The service URL is invalid/malformed. Code: 17."));
  EXPECT_THAT(run.error, HasSubstr("hint: A service URL reads service:TYPE://HOST[:PORT][/PATH]"));
}

TEST_F(ToolConfig, ShowsWhatSearchesUse) {
  const json settings = RunForJson({"config", "show", "--client", "--timeout", "15000"})["settings"];
  ASSERT_EQ(settings.size(), 18U);
  EXPECT_EQ(settings[0], (json{{"property", "net.slp.multicastTTL"},
                               {"label", "Multicast TTL"},
                               {"value", 255},
                               {"isStandardDefault", true}}));
  EXPECT_EQ(settings[8], (json{{"property", "net.slp.port"},
                               {"label", "Port"},
                               {"value", daemon_->port()},
                               {"isStandardDefault", false}}));
  EXPECT_EQ(settings[16], (json{{"property", "net.slp.multicastMaximumWait"},
                                {"label", "Multicast Maximum Wait"},
                                {"value", 9000},
                                {"isStandardDefault", false}}));
}

TEST_F(ToolConfig, MarksInTheTableWhatIsNoStandardDefault) {
  const ProgramRun run = Run({"config", "show", "--client"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.output, HasSubstr("\n   net.slp.multicastTTL "));
  EXPECT_THAT(run.output, HasSubstr("\n*  net.slp.port "));
}

TEST(ToolParse, PrintsTheParts) {
  const ProgramRun run = RunTool({"parse", "service:zdrest.tamro:http://10.0.0.5:8080/api"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "PART          VALUE\n"
            "type          service:zdrest.tamro:http\n"
            "host          10.0.0.5\n"
            "port          8080\n"
            "net family    (IP)\n"
            "service part  /api\n");
  EXPECT_EQ(json::parse(RunTool({"parse", "service:x://[::1]:80/p", "--json"}).output),
            (json{{"url", "service:x://[::1]:80/p"},
                  {"type", "service:x"},
                  {"host", "::1"},
                  {"port", 80},
                  {"netFamily", "v6"},
                  {"servicePart", "/p"}}));
}

TEST(ToolParse, ExitsWith3OnSomethingThatIsNoUrl) {
  const ProgramRun run = RunTool({"parse", "service:x://"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.output, "");
  EXPECT_THAT(run.error, HasSubstr("The service URL address specification is empty. Code: 18."));
}

}  // namespace
}  // namespace kelsd::integration
