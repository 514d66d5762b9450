#include "slpd/directory/client_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/slpd/daemon_logic.h"

namespace slp {
namespace {

using testing::ElementsAre;

TEST(DirectoryClientSettingsTest, ComesFromTheProperties) {
  Properties properties;
  properties.Set("net.slp.DAAddresses", "10.0.0.5, some.name,10.0.0.6,10.0.0.256,host-2,a_b,.x");
  properties.Set("net.slp.DAActiveDiscoveryInterval", "60");
  properties.Set("net.slp.DADiscoveryTimeouts", "10,20");
  properties.Set("net.slp.datagramTimeouts", "30");
  properties.Set("net.slp.passiveDADetection", "false");
  properties.Set("net.slp.staleDACheckPeriod", "7");
  std::vector<std::string> problems;
  DirectoryClientSettings expected;
  expected.configured = {"10.0.0.5", "10.0.0.6"};
  expected.names = {"some.name", "host-2"};
  expected.passive = false;
  expected.interval = Seconds(60);
  expected.discovery_waits = {Instant(10), Instant(20)};
  expected.datagram_waits = {Instant(30)};
  expected.check_period = Seconds(7);
  expected.scopes = {"DEFAULT", "TAMRO"};
  expected.own_addresses = {"10.0.0.1", "127.0.0.1"};
  EXPECT_EQ(DirectoryClientSettings::From(properties, TestSettings(), problems), expected);
  EXPECT_THAT(problems,
              ElementsAre("net.slp.DAAddresses names 10.0.0.256, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names a_b, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names .x, which is no IPv4 address; it is not used"));
}

TEST(DirectoryClientSettingsTest, TakesIpv6AddressesWhereTheyAreInUse) {
  Properties properties;
  properties.Set("net.slp.DAAddresses", "10.0.0.5,2001:db8::5,a_b");
  std::vector<std::string> problems;
  EXPECT_THAT(DirectoryClientSettings::From(properties, TestSettings(), problems).configured,
              ElementsAre("10.0.0.5"));
  EXPECT_THAT(problems,
              ElementsAre("net.slp.DAAddresses names 2001:db8::5, which is no IPv4 address; it is not used",
                          "net.slp.DAAddresses names a_b, which is no IPv4 address; it is not used"));
  problems.clear();
  properties.Set("net.slp.useIPv6", "true");
  EXPECT_THAT(DirectoryClientSettings::From(properties, TestSettings(), problems).configured,
              ElementsAre("10.0.0.5", "2001:db8::5"));
  EXPECT_THAT(problems, ElementsAre("net.slp.DAAddresses names a_b, which is no IP address; it is not used"));
}

}  // namespace
}  // namespace slp
