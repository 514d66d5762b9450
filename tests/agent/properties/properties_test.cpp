#include "properties/properties.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/properties/temporary_files.h"
#include "properties/catalogue.h"

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> Texts(const std::vector<PropertyProblem>& problems) {
  std::vector<std::string> texts;
  for (const PropertyProblem& problem : problems) {
    texts.push_back(problem.ToString());
  }
  return texts;
}

// The defaults with these values instead.
std::map<std::string, std::string, std::less<>> DefaultsWith(
    const std::map<std::string, std::string, std::less<>>& changes) {
  std::map<std::string, std::string, std::less<>> values = Properties().values();
  for (const auto& [key, value] : changes) {
    values[key] = value;
  }
  return values;
}

TEST(PropertiesTest, BeginWithTheDefaults) {
  const Properties properties;
  EXPECT_EQ(properties.values().size(), PropertyCatalogue().size());
  for (const PropertyInfo& property : PropertyCatalogue()) {
    EXPECT_EQ(properties.Get(property.key), std::string(property.default_value)) << property.key;
  }
  EXPECT_EQ(properties.Get("net.slp.OpenSLPConfigFile"), std::nullopt);
  EXPECT_EQ(properties.Get("net.slp.EnvConfigFile"), std::nullopt);
  EXPECT_EQ(properties.Get("net.slp.AppConfigFile"), std::nullopt);
  EXPECT_EQ(properties.Get("net.slp.mtu"), std::nullopt);
  EXPECT_EQ(properties.Get(""), std::nullopt);
}

TEST(PropertiesTest, ALaterFileWinsKeyByKey) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Write("global", "net.slp.MTU=600\nnet.slp.port=1001\nnet.slp.locale=de\n");
  sources.environment = files.Write("environment", "net.slp.port=1002\nnet.slp.locale=fr\n");
  sources.application = files.Write("application", "net.slp.locale=it\nnet.slp.locale=pt\n");
  std::vector<PropertyProblem> problems;
  EXPECT_EQ(Properties::Load(sources, problems).values(), DefaultsWith({
                                                              {"net.slp.MTU", "600"},
                                                              {"net.slp.port", "1002"},
                                                              {"net.slp.locale", "pt"},
                                                              {"net.slp.OpenSLPConfigFile", sources.global},
                                                              {"net.slp.EnvConfigFile", sources.environment},
                                                              {"net.slp.AppConfigFile", sources.application},
                                                          }));
  EXPECT_THAT(Texts(problems), IsEmpty());
}

TEST(PropertiesTest, FilesThatCannotBeOpenedAreLeftOut) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Path("missing");
  sources.environment = files.Write("environment", "");
  std::vector<PropertyProblem> problems;
  EXPECT_EQ(Properties::Load(sources, problems).values(),
            DefaultsWith({{"net.slp.EnvConfigFile", sources.environment}}));
  EXPECT_THAT(Texts(problems), IsEmpty());

  sources.required = true;
  EXPECT_EQ(Properties::Load(sources, problems).values(),
            DefaultsWith({{"net.slp.EnvConfigFile", sources.environment}}));
  EXPECT_THAT(Texts(problems), ElementsAre(sources.global + ": cannot be opened"));
}

TEST(PropertiesTest, LinesThatCannotBeUsedAreReportedAndLeftOut) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Write("global",
                               "net.slp.MTU = 800\n"
                               "net.slp.port = abc\r\n"
                               "net.slp.isDA = perhaps\n");
  sources.application = files.Write("application",
                                    "# comment\n"
                                    "net.slp.MTU = 575\n"
                                    "net.slp.OpenSLPVersion = 3\n"
                                    "net.slp.EnvConfigFile = here\n"
                                    "net.slp.unicastTimeouts = 100, x\n"
                                    "net.slp.multicastTTL = 7\n"
                                    "net.slp.multicastTTL = 256\n"
                                    "nobody.knows = this\n");
  std::vector<PropertyProblem> problems;
  EXPECT_EQ(Properties::Load(sources, problems).values(), DefaultsWith({
                                                              {"net.slp.MTU", "800"},
                                                              {"net.slp.multicastTTL", "7"},
                                                              {"nobody.knows", "this"},
                                                              {"net.slp.OpenSLPConfigFile", sources.global},
                                                              {"net.slp.AppConfigFile", sources.application},
                                                          }));
  const std::string& global = sources.global;
  const std::string& application = sources.application;
  EXPECT_THAT(
      Texts(problems),
      ElementsAre(
          global + ":2: net.slp.port must be a whole number from 1 to 65535, not \"abc\"",
          global + ":3: net.slp.isDA must be true or false, not \"perhaps\"",
          application + ":2: net.slp.MTU must be a whole number from 576 to 65507, not \"575\"",
          application + ":3: net.slp.OpenSLPVersion cannot be set",
          application + ":4: net.slp.EnvConfigFile cannot be set",
          application + ":5: net.slp.unicastTimeouts must be milliseconds above 0, separated by commas, "
                        "not \"100, x\"",
          application + ":7: net.slp.multicastTTL must be a whole number from 1 to 255, not \"256\""));
}

TEST(PropertiesTest, LinesThatSetNothingAreReported) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Write("global",
                               "net.slp.MTU 800\n"
                               "; comment\n"
                               "\t\n"
                               "= 900\n"
                               "net.slp.port =\n"
                               "net.slp locale = de\n"
                               "\x01\xFF = x\n"
                               "net.slp.locale = fr\n");
  std::vector<PropertyProblem> problems;
  const Properties properties = Properties::Load(sources, problems);
  EXPECT_EQ(properties.values(),
            DefaultsWith({{"net.slp.locale", "fr"}, {"net.slp.OpenSLPConfigFile", sources.global}}));
  const std::string no_key =
      " what stands before the = is no key: a blank is in it, or a character that is not printable ASCII";
  EXPECT_THAT(Texts(problems), ElementsAre(sources.global + ":1: neither a comment nor \"key = value\"",
                                           sources.global + ":4: neither a comment nor \"key = value\"",
                                           sources.global + ":6:" + no_key, sources.global + ":7:" + no_key));
  EXPECT_EQ(properties.Stated("net.slp locale"), "de") << "a program that asks for it has it";
}

TEST(PropertiesTest, OfAListOfHostsThoseThatAreSomeHold) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Write("global",
                               "net.slp.broadcastAddr = nonsense\n"
                               "net.slp.DAAddresses = ::::, 192.0.2.1,1.2.3.4.5,host\n");
  sources.application = files.Write("application", "net.slp.DAAddresses = a_b\n");
  std::vector<PropertyProblem> problems;
  Properties properties = Properties::Load(sources, problems);
  EXPECT_THAT(
      Texts(problems),
      ElementsAre(sources.global + ":1: net.slp.broadcastAddr must be an IPv4 address, not \"nonsense\"",
                  sources.global + ":2: net.slp.DAAddresses must be addresses or names of hosts "
                                   "separated by commas, not \"::::, 192.0.2.1,1.2.3.4.5,host\"",
                  sources.application + ":1: net.slp.DAAddresses must be addresses or names of hosts "
                                        "separated by commas, not \"a_b\""));
  EXPECT_EQ(properties.GetString("net.slp.broadcastAddr"), "255.255.255.255");
  EXPECT_THAT(properties.GetStringList("net.slp.DAAddresses"), ElementsAre("192.0.2.1", "host"));
  EXPECT_EQ(properties.Stated("net.slp.broadcastAddr"), "nonsense");
  EXPECT_EQ(properties.Stated("net.slp.DAAddresses"), "a_b");
}

TEST(PropertiesTest, WhatWasLeftOutIsStatedAllTheSame) {
  const TemporaryFiles files;
  PropertyFiles sources;
  sources.global = files.Write("global",
                               "net.slp.MTU = 800\n"
                               "net.slp.port = abc\n"
                               "net.slp.multicastTTL = 0\n"
                               "net.slp.useIPv4 = perhaps\n"
                               "net.slp.useScopes = a(b\n"
                               "net.slp.OpenSLPVersion = 3\n");
  sources.application = files.Write("application",
                                    "net.slp.MTU = 575\n"
                                    "net.slp.multicastTTL = 7\n"
                                    "net.slp.unicastTimeouts = 100, x\n");
  std::vector<PropertyProblem> problems;
  Properties properties = Properties::Load(sources, problems);
  using testing::Optional;
  EXPECT_THAT(properties.Stated("net.slp.MTU"), Optional(std::string("575")));
  EXPECT_THAT(properties.Stated("net.slp.port"), Optional(std::string("abc")));
  EXPECT_THAT(properties.Stated("net.slp.unicastTimeouts"), Optional(std::string("100, x")));
  EXPECT_THAT(properties.Stated("net.slp.useScopes"), Optional(std::string("a(b")));
  EXPECT_THAT(properties.Stated("net.slp.multicastTTL"), Optional(std::string("7")))
      << "a later line is good";
  EXPECT_THAT(properties.Stated("net.slp.useIPv4"), Optional(std::string("true"))) << "a flag";
  EXPECT_THAT(properties.Stated("net.slp.OpenSLPVersion"), Optional(std::string("2.0.0"))) << "read-only";
  EXPECT_THAT(properties.Stated("net.slp.locale"), Optional(std::string("en")));
  EXPECT_EQ(properties.Stated("nobody.knows"), std::nullopt);
  EXPECT_EQ(properties.GetInt("net.slp.MTU"), 800) << "what is in use";
  properties.Set("net.slp.MTU", "900");
  EXPECT_THAT(properties.Stated("net.slp.MTU"), Optional(std::string("900")));
}

TEST(PropertiesTest, ReadByType) {
  Properties properties;
  EXPECT_TRUE(properties.GetBool("net.slp.appendLog"));
  EXPECT_FALSE(properties.GetBool("net.slp.isDA"));
  EXPECT_EQ(properties.GetInt("net.slp.maxResults"), -1);
  properties.Set("net.slp.maxResults", "0");
  EXPECT_EQ(properties.GetInt("net.slp.maxResults"), 0);
  EXPECT_THAT(properties.GetIntList("net.slp.datagramTimeouts"),
              ElementsAre(500, 750, 1000, 1500, 2000, 3000));
  EXPECT_THAT(properties.GetStringList("net.slp.useScopes"), ElementsAre("DEFAULT"));
  EXPECT_THAT(properties.GetStringList("net.slp.interfaces"), IsEmpty());
  EXPECT_EQ(properties.GetString("net.slp.locale"), "en");

  properties.Set("net.slp.isDA", "TRUE");
  properties.Set("net.slp.MTU", " 9000 ");
  properties.Set("net.slp.datagramTimeouts", "1,2,0,3");
  properties.Set("net.slp.useScopes", " a ,,B\\2Cc, ");
  properties.Set("own.key", "7");
  EXPECT_TRUE(properties.GetBool("net.slp.isDA"));
  EXPECT_EQ(properties.GetInt("net.slp.MTU"), 9000);
  EXPECT_THAT(properties.GetIntList("net.slp.datagramTimeouts"), ElementsAre(1, 2));
  EXPECT_THAT(properties.GetStringList("net.slp.useScopes"), ElementsAre("a", "B\\2Cc"));
  EXPECT_EQ(properties.GetString("own.key"), "7");
}

TEST(PropertiesTest, WhatDoesNotConvertReadsAsTheDefault) {
  Properties properties;
  properties.Set("net.slp.appendLog", "x");
  properties.Set("net.slp.MTU", "5");
  properties.Set("net.slp.port", "");
  properties.Set("net.slp.unicastTimeouts", "0");
  EXPECT_TRUE(properties.GetBool("net.slp.appendLog"));
  EXPECT_EQ(properties.GetInt("net.slp.MTU"), 1400);
  EXPECT_EQ(properties.GetInt("net.slp.port"), 427);
  EXPECT_THAT(properties.GetIntList("net.slp.unicastTimeouts"),
              ElementsAre(500, 750, 1000, 1500, 2000, 3000));
  EXPECT_EQ(properties.Get("net.slp.MTU"), "5");

  EXPECT_FALSE(properties.GetBool("own.key"));
  EXPECT_EQ(properties.GetInt("own.key"), 0);
  EXPECT_THAT(properties.GetIntList("own.key"), IsEmpty());
  EXPECT_THAT(properties.GetStringList("own.key"), IsEmpty());
  EXPECT_EQ(properties.GetString("own.key"), "");
}

TEST(PropertyProblemTest, NamesFileAndLine) {
  EXPECT_EQ((PropertyProblem{"a.conf", 12, "is odd"}.ToString()), "a.conf:12: is odd");
  EXPECT_EQ((PropertyProblem{"a.conf", 0, "is odd"}.ToString()), "a.conf: is odd");
}

}  // namespace
}  // namespace slp
