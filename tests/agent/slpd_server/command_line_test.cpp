#include "slpd/server/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <variant>

#include "properties/catalogue.h"

namespace slp {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

std::variant<CommandLine, EarlyExit> Parse(std::vector<const char*> arguments) {
  arguments.insert(arguments.begin(), "slpd");
  return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
}

TEST(CommandLine, NothingGivenMeansDefaults) {
  const auto parsed = Parse({});
  const auto* const line = std::get_if<CommandLine>(&parsed);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->config_file + line->registration_file + line->log_file + line->pid_file + line->user, "");
  EXPECT_TRUE(line->properties.empty());
  EXPECT_FALSE(line->check);
  EXPECT_EQ(line->verb, Verb::kNone);
}

TEST(CommandLine, TakesFilesAndProperties) {
  const auto parsed = Parse({"--config", "a", "--regfile=b", "--log", "c", "--pidfile", "d", "--user", "e:f",
                             "--property", "net.slp.port=4270", "--property", " net.slp.useScopes = a,b ",
                             "--property", "net.slp.DAAttributes=(x=1)", "--check"});
  const auto* const line = std::get_if<CommandLine>(&parsed);
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->config_file, "a");
  EXPECT_EQ(line->registration_file, "b");
  EXPECT_EQ(line->log_file, "c");
  EXPECT_EQ(line->pid_file, "d");
  EXPECT_EQ(line->user, "e:f");
  EXPECT_THAT(line->properties, ElementsAre(Pair("net.slp.port", "4270"), Pair("net.slp.useScopes", "a,b"),
                                            Pair("net.slp.DAAttributes", "(x=1)")));
  EXPECT_TRUE(line->check);
}

TEST(CommandLine, AVerbAsksForTheService) {
  struct Row {
    const char* word;
    Verb verb;
  };
  const Row rows[] = {{"install", Verb::kInstall}, {"uninstall", Verb::kUninstall}, {"run", Verb::kRun}};
  for (const Row& row : rows) {
    for (const std::vector<const char*>& arguments :
         {std::vector<const char*>{row.word, "--config", "a", "--log", "b"},
          std::vector<const char*>{"--config", "a", "--log", "b", row.word}}) {
      const auto parsed = Parse(arguments);
      const auto* const line = std::get_if<CommandLine>(&parsed);
      ASSERT_NE(line, nullptr) << row.word;
      EXPECT_EQ(line->verb, row.verb) << row.word;
      EXPECT_EQ(line->config_file, "a");
      EXPECT_EQ(line->log_file, "b");
    }
  }
}

TEST(CommandLine, WrongOnesSayWhatIsWrong) {
  struct Row {
    std::vector<const char*> arguments;
    std::string text;
  };
  const Row rows[] = {
      {{"--property", "net.slp.port"}, "slpd: --property: KEY=VALUE is wanted, not \"net.slp.port\" ("},
      {{"--property", "net.slp.prot=1"},
       "slpd: --property: there is no property net.slp.prot; slpd --help-properties lists them ("},
      {{"--property", "net.slp.port=0"}, "slpd: --property: net.slp.port must be "},
      {{"--property", "net.slp.broadcastAddr=nonsense"},
       "slpd: --property: net.slp.broadcastAddr must be an IPv4 address, not \"nonsense\" ("},
      {{"--property", "net.slp.DAAddresses=::::"},
       "slpd: --property: net.slp.DAAddresses must be addresses or names of hosts separated by commas, not "
       "\"::::\" ("},
      {{"--property", "net.slp.OpenSLPVersion=3"},
       "slpd: --property: net.slp.OpenSLPVersion cannot be set ("},
      {{"--config"}, "slpd: --config: 1 required FILE missing ("},
      {{"--nonsense"}, "slpd: The following argument was not expected: --nonsense ("},
      {{"install", "uninstall"}, "slpd: "},
      {{"install", "--check"}, "slpd: --check goes without a verb ("},
      {{"--user", "a:"}, "slpd: --user: NAME or NAME:GROUP is wanted, not \"a:\" ("},
      {{"--user", ":a"}, "slpd: --user: NAME or NAME:GROUP is wanted, not \":a\" ("},
      {{"run", "--user", "a"}, "slpd: --user goes without a verb ("},
      {{"word"}, "slpd: The following argument was not expected: word ("},
  };
  for (const Row& row : rows) {
    const auto parsed = Parse(row.arguments);
    const auto* const early = std::get_if<EarlyExit>(&parsed);
    ASSERT_NE(early, nullptr) << row.text;
    EXPECT_EQ(early->status, ExitStatus::kUsage);
    EXPECT_THAT(early->text,
                AllOf(StartsWith(row.text), EndsWith(" (slpd --help shows what is possible)\n")));
  }
}

TEST(CommandLine, HelpNamesEveryOptionStatusAndAnExample) {
  const auto parsed = Parse({"--help"});
  const auto* const early = std::get_if<EarlyExit>(&parsed);
  ASSERT_NE(early, nullptr);
  EXPECT_EQ(early->status, ExitStatus::kOk);
  for (const char* const part : {"--config FILE",
                                 "--regfile FILE",
                                 "--log FILE",
                                 "--pidfile FILE",
                                 "--user NAME[:GROUP]",
                                 "--property KEY=VALUE",
                                 "--check",
                                 "--help-properties",
                                 "--version",
                                 "KELSD_SLPD_PIDFILE",
                                 "Exit status: 0 ",
                                 "1 could not start",
                                 "or --check has\nfound something wrong;",
                                 "2 wrong",
                                 "3 another slpd",
                                 "without that none)",
                                 "Examples:",
                                 "SIGHUP",
                                 "install",
                                 "uninstall",
                                 "run"}) {
    EXPECT_THAT(early->text, HasSubstr(part));
  }
}

TEST(CommandLine, HelpPropertiesListsTheWholeCatalogue) {
  const auto parsed = Parse({"--help-properties"});
  const auto* const early = std::get_if<EarlyExit>(&parsed);
  ASSERT_NE(early, nullptr);
  EXPECT_EQ(early->status, ExitStatus::kOk);
  for (const PropertyInfo& property : PropertyCatalogue()) {
    EXPECT_THAT(early->text,
                HasSubstr("\n" + std::string(property.key) + " = " + std::string(property.default_value) +
                          "\n    " + std::string(property.effect)));
  }
}

TEST(CommandLine, VersionIsOneLine) {
  const auto parsed = Parse({"--version"});
  const auto* const early = std::get_if<EarlyExit>(&parsed);
  ASSERT_NE(early, nullptr);
  EXPECT_EQ(early->status, ExitStatus::kOk);
  EXPECT_THAT(early->text, testing::MatchesRegex("slpd .+ \\(SLPv2, RFC 2608\\)\n"));
  EXPECT_EQ(std::count(early->text.begin(), early->text.end(), '\n'), 1);
}

}  // namespace
}  // namespace slp
