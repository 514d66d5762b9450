#include "properties/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "properties/property_values.h"

namespace slp {
namespace {

TEST(CatalogueTest, HoldsEveryDefault) {
  const std::string timeouts = "500,750,1000,1500,2000,3000";
  const std::map<std::string, std::string> expected = {
      {"net.slp.isDA", "false"},
      {"net.slp.isBroadcastOnly", "false"},
      {"net.slp.traceDATraffic", "false"},
      {"net.slp.traceMsg", "false"},
      {"net.slp.traceDrop", "false"},
      {"net.slp.traceReg", "false"},
      {"net.slp.preferSLPv1", "false"},
      {"net.slp.securityEnabled", "false"},
      {"net.slp.useIPv6", "false"},
      {"net.slp.indexSrvtype", "false"},
      {"net.slp.appendLog", "true"},
      {"net.slp.passiveDADetection", "true"},
      {"net.slp.activeDADetection", "true"},
      {"net.slp.watchRegistrationPID", "true"},
      {"net.slp.checkSourceAddr", "true"},
      {"net.slp.useDHCP", "true"},
      {"net.slp.useIPv4", "true"},
      {"net.slp.DAHeartBeat", "10800"},
      {"net.slp.DAActiveDiscoveryInterval", "900"},
      {"net.slp.staleDACheckPeriod", "0"},
      {"net.slp.multicastTTL", "255"},
      {"net.slp.MTU", "1400"},
      {"net.slp.port", "427"},
      {"net.slp.maxResults", "-1"},
      {"net.slp.randomWaitBound", "1000"},
      {"net.slp.multicastMaximumWait", "15000"},
      {"net.slp.unicastMaximumWait", "5000"},
      {"net.slp.DADiscoveryMaximumWait", "5000"},
      {"net.slp.multicastTimeouts", timeouts},
      {"net.slp.unicastTimeouts", timeouts},
      {"net.slp.DADiscoveryTimeouts", timeouts},
      {"net.slp.datagramTimeouts", timeouts},
      {"net.slp.useScopes", "DEFAULT"},
      {"net.slp.locale", "en"},
      {"net.slp.broadcastAddr", "255.255.255.255"},
      {"net.slp.OpenSLPVersion", "2.0.0"},
      {"net.slp.DAAttributes", ""},
      {"net.slp.DAAddresses", ""},
      {"net.slp.serializedRegURL", ""},
      {"net.slp.interfaces", ""},
      {"net.slp.replyRate", "500"},
      {"net.slp.maxRegistrationsPerHost", "10000"},
      {"net.slp.maxBytesPerHost", "67108864"},
      {"net.slp.trustedNetworks", ""},
      {"net.slp.SAAttributes", ""},
      {"net.slp.typeHint", ""},
      {"net.slp.indexedAttributes", ""},
  };
  std::map<std::string, std::string> defaults;
  for (const PropertyInfo& property : PropertyCatalogue()) {
    EXPECT_TRUE(defaults.emplace(property.key, property.default_value).second)
        << property.key << " stands twice";
  }
  EXPECT_EQ(defaults, expected);
}

TEST(CatalogueTest, AllowsEveryDefaultAndSaysWhatItDoes) {
  for (const PropertyInfo& property : PropertyCatalogue()) {
    EXPECT_TRUE(IsAllowed(property, property.default_value)) << property.key;
    EXPECT_FALSE(property.effect.empty()) << property.key;
    EXPECT_FALSE(DescribeAllowedValues(property).empty()) << property.key;
  }
}

TEST(CatalogueTest, FindsKeysByTheirExactSpelling) {
  ASSERT_NE(FindProperty("net.slp.MTU"), nullptr);
  EXPECT_EQ(FindProperty("net.slp.MTU")->key, "net.slp.MTU");
  EXPECT_EQ(FindProperty("net.slp.mtu"), nullptr);
  EXPECT_EQ(FindProperty("net.slp.AppConfigFile"), nullptr);
  EXPECT_EQ(FindProperty(""), nullptr);
}

TEST(CatalogueTest, ReadOnlyAreTheVersionAndTheFiles) {
  std::vector<std::string> read_only;
  for (const PropertyInfo& property : PropertyCatalogue()) {
    if (IsReadOnlyProperty(property.key)) {
      read_only.emplace_back(property.key);
    }
  }
  EXPECT_THAT(read_only, testing::ElementsAre("net.slp.OpenSLPVersion"));
  EXPECT_TRUE(IsReadOnlyProperty("net.slp.OpenSLPConfigFile"));
  EXPECT_TRUE(IsReadOnlyProperty("net.slp.EnvConfigFile"));
  EXPECT_TRUE(IsReadOnlyProperty("net.slp.AppConfigFile"));
  EXPECT_FALSE(IsReadOnlyProperty("nobody.knows"));
}

TEST(CatalogueTest, SaysWhatIsWithoutEffect) {
  std::vector<std::string> without_effect;
  for (const PropertyInfo& property : PropertyCatalogue()) {
    if (!property.has_effect) {
      without_effect.emplace_back(property.key);
    }
  }
  EXPECT_THAT(without_effect,
              testing::UnorderedElementsAre("net.slp.useIPv4", "net.slp.typeHint", "net.slp.preferSLPv1",
                                            "net.slp.securityEnabled", "net.slp.useDHCP",
                                            "net.slp.indexSrvtype", "net.slp.indexedAttributes"));
}

TEST(CatalogueTest, DescribesWhatIsAllowed) {
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.isDA")), "true or false");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.port")), "a whole number from 1 to 65535");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.maxResults")), "-1 or a whole number from 1 on");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.MTU")), "a whole number from 576 to 65507");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.unicastTimeouts")),
            "milliseconds above 0, separated by commas");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.broadcastAddr")), "an IPv4 address");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.DAAddresses")),
            "addresses or names of hosts separated by commas");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.serializedRegURL")), "a text");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.interfaces")), "texts separated by commas");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.locale")), "a language tag");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.useScopes")), "scope names separated by commas");
  EXPECT_EQ(DescribeAllowedValues(*FindProperty("net.slp.SAAttributes")), "an attribute list");
}

}  // namespace
}  // namespace slp
