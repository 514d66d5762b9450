// What the tool says about its own command line; no daemon takes part.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
      {},         {"find"},           {"attributes"},      {"parse"},          {"register"},
      {"config"}, {"config", "show"}, {"config", "get"},   {"config", "set"},  {"config", "validate"},
      {"slpd"},   {"slpd", "status"}, {"slpd", "restart"}, {"config", "path"}, {"deregister"},
      {"doctor"}};
  for (std::vector<std::string> verb : verbs) {
    verb.emplace_back("--help");
    const ProgramRun run = RunTool(verb);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.output, AllOf(HasSubstr("Examples:\n"), HasSubstr("Exit status:")))
        << (verb.size() > 1 ? verb.front() : "kelsd");
  }
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
      {{}, "A subcommand is required"},
      {{"fnid"}, "'fnid' was not expected"},
      {{"find"}, "TYPE is required"},
      {{"find", "zdrest", "--nonsense"}, "--nonsense"},
      {{"find", "zdrest", "--timeout", "soon"}, "Could not convert: --timeout = soon"},
      {{"find", "zdrest", "--config", "/nowhere/slp.conf"}, "File does not exist: /nowhere/slp.conf"},
      {{"find", "zdrest", "--filter", "(a=1)", "--ip", "10.0.0.1"}, "--filter does not go with"},
      {{"find", "zdrest", "--ns", "ns1", "--ip", "10.0.0.1"}, "--ip and --ns do not go together"},
      {{"find", "zdrest", "--server-name", "srv1"}, "--server-name goes with --ip or --ns"},
      {{"find", "zdrest", "--ip", "10.0.0.1", "--ip", "10.0.0.2"}, "without it, name one"},
      {{"parse"}, "URL is required"},
      {{"config"}, "A subcommand is required"},
      {{"config", "sohw"}, "'sohw' was not expected"},
      {{"config", "get", "colour"}, "there is no setting 'colour'"},
      {{"config", "set"}, "SETTING is required"},
      {{"config", "set", "isDA"}, "settings are given as KEY=VALUE, not 'isDA'"},
      {{"config", "set", "colour=red"}, "there is no setting 'colour'"},
      {{"config", "set", "net.slp.port=4270"}, "'net.slp.port' is read-only here"},
      {{"config", "set", "--client", "MTU=1400"}, "lives in the process that sets it"},
      {{"slpd"}, "A subcommand is required"},
      {{"register"}, "SERVICE is required"},
      {{"register", "zdrest"}, "say where the service is: --address HOST:PORT"},
      {{"register", "service:x://h", "--address", "h"}, "--address goes with a type"},
      {{"register", "servicehost", "--address", "h:1"}, "say which service host it is: servicehost:CONCRETE"},
      {{"register", "servicehost:", "--address", "h:1"},
       "say which service host it is: servicehost:CONCRETE"},
      {{"register", "service:servicehost.tamro", "--address", "h:1"}, "say which service host it is"},
      {{"register", "zdrest", "--address", "h", "--attr", "x"}, "--attr takes TAG=VALUE, not 'x'"},
      {{"register", "zdrest", "--address", "h", "--lifetime", "0"}, "--lifetime: Value 0 not in range"},
      {{"register", "zdrest", "--address", "h", "--lifetime", "65536"}, "--lifetime"},
      {{"deregister"}, "URL is required"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = RunTool(row.arguments);
    EXPECT_EQ(run.status, 2) << row.said;
    EXPECT_EQ(run.output, "") << row.said;
    EXPECT_THAT(run.error, HasSubstr(row.said));
  }
}

}  // namespace
}  // namespace kelsd::integration
