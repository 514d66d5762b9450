#include "properties/property_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace slp {
namespace {

TEST(ToBoolTest, TakesTheUsualWordsInEitherCase) {
  for (const char* text : {"true", "TRUE", "True", " true ", "yes", "YES", "1"}) {
    EXPECT_EQ(ToBool(text), true) << text;
  }
  for (const char* text : {"false", "FALSE", "no", "No", "0", "\t0"}) {
    EXPECT_EQ(ToBool(text), false) << text;
  }
  for (const char* text : {"", " ", "truee", "t", "2", "on", "01"}) {
    EXPECT_EQ(ToBool(text), std::nullopt) << text;
  }
}

TEST(ToIntTest, TakesWholeNumbersInRange) {
  EXPECT_EQ(ToInt("1", 1, 65535), 1);
  EXPECT_EQ(ToInt("65535", 1, 65535), 65535);
  EXPECT_EQ(ToInt(" 42\t", 1, 65535), 42);
  EXPECT_EQ(ToInt("-1", -1, 5), -1);
  EXPECT_EQ(ToInt("007", 1, 65535), 7);
  for (const char* text : {"0", "65536", "-1", "4294967297", "99999999999999999999", "", " ", "1x", "1 2",
                           "1.0", "0x10", "+1", "one"}) {
    EXPECT_EQ(ToInt(text, 1, 65535), std::nullopt) << text;
  }
}

TEST(ToIntListTest, EndsBeforeAZero) {
  using List = std::vector<int>;
  EXPECT_EQ(ToIntList("500", 1, 9999), List({500}));
  EXPECT_EQ(ToIntList(" 500 , 750,1000 ", 1, 9999), List({500, 750, 1000}));
  EXPECT_EQ(ToIntList("500,750,0,1000,x", 1, 9999), List({500, 750}));
  EXPECT_EQ(ToIntList("500,,750,", 1, 9999), List({500, 750}));
  for (const char* text : {"", ",", "0", "0,500", "x", "500,x", "500,-1", "500,10000", "1 2", "500;750"}) {
    EXPECT_EQ(ToIntList(text, 1, 9999), std::nullopt) << text;
  }
}

TEST(IsAllowedTest, KnowsTheEndsOfEveryRange) {
  struct Row {
    const char* key;
    const char* value;
    bool allowed;
  };
  const Row rows[] = {
      {"net.slp.isDA", "true", true},
      {"net.slp.isDA", "maybe", false},
      {"net.slp.port", "0", false},
      {"net.slp.port", "1", true},
      {"net.slp.port", "65535", true},
      {"net.slp.port", "65536", false},
      {"net.slp.multicastTTL", "0", false},
      {"net.slp.multicastTTL", "1", true},
      {"net.slp.multicastTTL", "255", true},
      {"net.slp.multicastTTL", "256", false},
      {"net.slp.MTU", "575", false},
      {"net.slp.MTU", "576", true},
      {"net.slp.MTU", "65507", true},
      {"net.slp.MTU", "65508", false},
      {"net.slp.DAHeartBeat", "0", false},
      {"net.slp.DAHeartBeat", "1", true},
      {"net.slp.DAHeartBeat", "2147483647", true},
      {"net.slp.DAHeartBeat", "2147483648", false},
      {"net.slp.DAActiveDiscoveryInterval", "-1", false},
      {"net.slp.DAActiveDiscoveryInterval", "0", true},
      {"net.slp.DAActiveDiscoveryInterval", "65535", true},
      {"net.slp.DAActiveDiscoveryInterval", "65536", false},
      {"net.slp.staleDACheckPeriod", "-1", false},
      {"net.slp.staleDACheckPeriod", "0", true},
      {"net.slp.maxResults", "-2", false},
      {"net.slp.maxResults", "-1", true},
      {"net.slp.maxResults", "0", false},
      {"net.slp.maxResults", "1", true},
      {"net.slp.maxResults", "2147483647", true},
      {"net.slp.maxResults", "2147483648", false},
      {"net.slp.randomWaitBound", "-1", false},
      {"net.slp.randomWaitBound", "0", true},
      {"net.slp.multicastMaximumWait", "0", false},
      {"net.slp.multicastMaximumWait", "1", true},
      {"net.slp.unicastMaximumWait", "0", false},
      {"net.slp.DADiscoveryMaximumWait", "0", false},
      {"net.slp.unicastTimeouts", "1,2147483647", true},
      {"net.slp.unicastTimeouts", "2147483648", false},
      {"net.slp.multicastTimeouts", "-5", false},
      {"net.slp.DADiscoveryTimeouts", "0", false},
      {"net.slp.datagramTimeouts", "a", false},
      {"net.slp.useScopes", "anything, at all", true},
      {"net.slp.useScopes", "tamro,B\\2Cc", true},
      {"net.slp.useScopes", "tamro,a*b", false},
      {"net.slp.useScopes", " , ", false},
      {"net.slp.locale", "en-GB", true},
      {"net.slp.locale", "\xC3\xBC", false},
      {"net.slp.SAAttributes", "(room=7),x-ok", true},
      {"net.slp.SAAttributes", "(room=7", false},
      {"net.slp.DAAttributes", "(a_b=1)", false},
      {"net.slp.broadcastAddr", "192.0.2.255", true},
      {"net.slp.broadcastAddr", "", false},
      {"net.slp.broadcastAddr", "nonsense", false},
      {"net.slp.broadcastAddr", "192.0.2", false},
      {"net.slp.broadcastAddr", "192.0.2.256", false},
      {"net.slp.broadcastAddr", "192.0.2.010", false},
      {"net.slp.broadcastAddr", "ff02::1", false},
      {"net.slp.DAAddresses", "", true},
      {"net.slp.DAAddresses", "192.0.2.1, host-2.example.org,2001:db8::7,fe80::7%eth0,sawah", true},
      {"net.slp.DAAddresses", "::::,1.2.3.4.5", false},
      {"net.slp.DAAddresses", "192.0.2.1,1.2.3.4.5", false},
      {"net.slp.DAAddresses", "192.0.2.256", false},
      {"net.slp.DAAddresses", "10.0.0.010", false},
      {"net.slp.DAAddresses", "a_b", false},
      {"net.slp.DAAddresses", "[2001:db8::7]", false},
      {"net.slp.DAAddresses", "a b", false},
      {"net.slp.interfaces", "eth0:1,Ethernet 2,192.0.2.1", true},
  };
  for (const Row& row : rows) {
    const PropertyInfo* const property = FindProperty(row.key);
    ASSERT_NE(property, nullptr) << row.key;
    EXPECT_EQ(IsAllowed(*property, row.value), row.allowed) << row.key << " = " << row.value;
  }
}

TEST(PropertyValuesTest, AKeyIsPrintableAsciiWithoutBlanks) {
  for (const char* const key : {"net.slp.MTU", "a", "!~", "\\2e"}) {
    EXPECT_TRUE(IsPropertyKey(key)) << key;
  }
  for (const char* const key : {"", "a b", "a\tb", "\x7F", "\x01", "B\xC3\xBCro"}) {
    EXPECT_FALSE(IsPropertyKey(key)) << key;
  }
}

TEST(PropertyValuesTest, HostsAreThoseThatAreAddressesOrNames) {
  EXPECT_EQ(UsableHosts("::::, 192.0.2.1,1.2.3.4.5,host,,a_b,2001:db8::7"), "192.0.2.1,host,2001:db8::7");
  EXPECT_EQ(UsableHosts("::::,1.2.3.4.5"), "");
}

}  // namespace
}  // namespace slp
