// What the tool says about its own command line; no daemon takes part.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "integration/tool/tool_fixture.h"

namespace kelsd::integration {
namespace {

using support::ProgramRun;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST(ToolCommandLine, EveryHelpShowsExamples) {
  const std::vector<std::vector<std::string>> verbs = {
      {},
      {"find"},
      {"attributes"},
      {"parse"},
      {"register"},
      {"deregister"},
      {"config"},
      {"config", "show"},
      {"config", "get"},
      {"config", "set"},
      {"config", "validate"},
      {"config", "path"},
      {"slpd"},
      {"slpd", "status"},
      {"slpd", "start"},
      {"slpd", "stop"},
      {"slpd", "restart"},
      {"doctor"},
  };
  for (std::vector<std::string> verb : verbs) {
    verb.emplace_back("--help");
    const ProgramRun run = RunTool(verb);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.output, AllOf(HasSubstr("Examples:\n"), HasSubstr("Exit status:")))
        << (verb.size() > 1 ? verb.front() : "kelsd");
  }
}

TEST(ToolCommandLine, TellsProgramsOfErrorsInJson) {
  const ProgramRun usage = RunTool({"find", "--json"});
  EXPECT_EQ(usage.status, 2);
  EXPECT_EQ(usage.output, "");
  EXPECT_EQ(usage.error, "{\"error\":{\"message\":\"TYPE is required; 'kelsd find --help' explains\"}}\n");

  const ProgramRun failure = RunTool({"parse", "service:x://", "--json"});
  EXPECT_EQ(failure.status, 3);
  EXPECT_EQ(failure.output, "");
  const nlohmann::json error = nlohmann::json::parse(failure.error)["error"];
  EXPECT_EQ(error["code"], 18);
  EXPECT_EQ(error["message"], "The service URL address specification is empty.");
  EXPECT_EQ(error["detail"], "");
  EXPECT_TRUE(error["debug"].is_string());
  EXPECT_EQ(error["hint"],
            "The URL names no host; behind '://' comes HOST[:PORT], e.g. "
            "service:zdrest.tamro:http://10.0.0.5:8080");
}

TEST(ToolCommandLine, SaysItsVersion) {
  EXPECT_THAT(RunTool({"--version"}).output, StartsWith("kelsd 1."));
}

TEST(ToolCommandLine, ExitsWith2WhenItMakesNoSense) {
  struct Row {
    std::vector<std::string> arguments;
    const char* said;
  };
  const std::vector<Row> rows = {
      {{}, "A subcommand is required; 'kelsd --help' explains"},
      {{"fnid"}, "'fnid' was not expected; did you mean 'find'? 'kelsd --help' explains"},
      {{"xyz"}, "'xyz' was not expected; 'kelsd --help' explains"},
      {{"find"}, "TYPE is required; 'kelsd find --help' explains"},
      {{"find", ""}, "the service type is empty; name one, e.g. zdrest or service:printer:lpr"},
      {{"find", "zdrest", "--nonsense"}, "'--nonsense' was not expected; 'kelsd find --help' explains"},
      {{"find", "zdrest", "--adress", "10.0.0.5"},
       "'--adress' was not expected; did you mean '--address'? 'kelsd find --help' explains"},
      {{"find", "zdrest", "--timeout", "soon"},
       "Could not convert: --timeout = soon; 'kelsd find --help' explains"},
      {{"find", "zdrest", "--config", "/nowhere/slp.conf"},
       "--config: File does not exist: /nowhere/slp.conf; 'kelsd find --help' explains"},
      {{"find", "zdrest", "--address", "server1"},
       "--address: 'server1' is no IP address, and SLP looks up no names; e.g. 10.0.0.5; 'kelsd find --help' "
       "explains"},
      {{"find", "zdrest", "--interface", "eth0"},
       "--interface: 'eth0' is no IP address, and SLP looks up no names; e.g. 10.0.0.5; 'kelsd find --help' "
       "explains"},
      {{"find", "zdrest", "--filter", "(a=1)", "--ip", "10.0.0.1"},
       "--filter does not go with --ip, --ns or --server-name: put all conditions into the filter"},
      {{"find", "zdrest", "--ns", "ns1", "--ip", "10.0.0.1"},
       "--ip and --ns do not go together: use --filter, e.g. "
       "\"(&(x-server-ns-name=ns1)(x-server-name=srv1))\""},
      {{"find", "zdrest", "--server-name", "srv1"},
       "--server-name goes with --ip or --ns; for the name alone use --filter \"(x-server-name=srv1)\""},
      {{"find", "zdrest", "--ip", "10.0.0.1", "--ip", "10.0.0.2"},
       "several addresses or naming services go with --server-name; without it, name one"},
      {{"attributes", "service:x://h", "--address", "server1"},
       "--address: 'server1' is no IP address, and SLP looks up no names; e.g. 10.0.0.5; 'kelsd attributes "
       "--help' explains"},
      {{"parse"}, "URL is required; 'kelsd parse --help' explains"},
      {{"config"}, "A subcommand is required; 'kelsd config --help' explains"},
      {{"config", "sohw"}, "'sohw' was not expected; did you mean 'show'? 'kelsd config --help' explains"},
      {{"config", "get", "colour"}, "there is no setting 'colour'; 'kelsd config show' lists them"},
      {{"config", "get", "usescopes"},
       "there is no setting 'usescopes'; did you mean 'useScopes'? 'kelsd config show' lists them"},
      {{"config", "set"}, "SETTING is required; 'kelsd config set --help' explains"},
      {{"config", "set", "isDA"}, "settings are given as KEY=VALUE, not 'isDA'"},
      {{"config", "set", "colour=red"}, "there is no setting 'colour'; 'kelsd config show' lists them"},
      {{"config", "set", "net.slp.port=4270"},
       "'net.slp.port' is read-only here; it is changed in the configuration file that 'kelsd config path' "
       "names"},
      {{"config", "set", "maxResults=3"}, "'maxResults' is a setting of searches: it goes with --client"},
      {{"config", "set", "--client", "isDA=true"}, "'isDA' is a setting of the daemon: leave out --client"},
      {{"config", "set", "--client", "port=4270"},
       "'port' is read-only here; it is changed in the configuration file that 'kelsd config path' names"},
      {{"config", "set", "--client", "MTU=small"}, "'MTU' cannot be set: 'small' is no whole number"},
      {{"slpd"}, "A subcommand is required; 'kelsd slpd --help' explains"},
      {{"slpd", "sttaus"}, "'sttaus' was not expected; did you mean 'status'? 'kelsd slpd --help' explains"},
      {{"register"}, "SERVICE is required; 'kelsd register --help' explains"},
      {{"register", "zdrest"},
       "say where the service is: --address HOST:PORT with the type, or give a whole URL"},
      {{"register", "service:x://h", "--address", "h"}, "--address goes with a type, not with a whole URL"},
      {{"register", "servicehost", "--address", "h:1"},
       "say which service host it is: servicehost:CONCRETE, e.g. servicehost:render"},
      {{"register", "servicehost:", "--address", "h:1"},
       "say which service host it is: servicehost:CONCRETE, e.g. servicehost:render"},
      {{"register", "service:servicehost.tamro", "--address", "h:1"},
       "say which service host it is: servicehost:CONCRETE, e.g. servicehost:render"},
      {{"register", "zdrest", "--address", "h", "--attr", "x"}, "--attr takes TAG=VALUE, not 'x'"},
      {{"register", "zdrest", "--address", "h", "--lifetime", "0"},
       "--lifetime: Value 0 not in range 1 to 65535; 'kelsd register --help' explains"},
      {{"register", "zdrest", "--address", "h", "--lifetime", "65536"},
       "--lifetime: Value 65536 not in range 1 to 65535; 'kelsd register --help' explains"},
      {{"deregister"}, "URL is required; 'kelsd deregister --help' explains"},
      {{"doctor", "now"}, "'now' was not expected; 'kelsd doctor --help' explains"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = RunTool(row.arguments);
    EXPECT_EQ(run.status, 2) << row.said;
    EXPECT_EQ(run.output, "") << row.said;
    EXPECT_EQ(run.error, "kelsd: " + std::string(row.said) + "\n");

    std::vector<std::string> arguments = row.arguments;
    arguments.emplace_back("--json");
    if (!row.arguments.empty() && row.arguments.back() != "--config") {
      const ProgramRun for_programs = RunTool(arguments);
      EXPECT_EQ(for_programs.status, 2) << row.said;
      EXPECT_EQ(for_programs.output, "") << row.said;
      const nlohmann::json error = nlohmann::json::parse(for_programs.error, nullptr, false);
      EXPECT_TRUE(error["error"]["message"].is_string()) << for_programs.error;
    }
  }
}

}  // namespace
}  // namespace kelsd::integration
