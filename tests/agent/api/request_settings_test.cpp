#include "api/request_settings.h"

#include <gtest/gtest.h>

#include <limits>

namespace slp::client {
namespace {

using std::chrono::milliseconds;
using Strings = std::vector<std::string>;
using Waits = std::vector<milliseconds>;

constexpr int kNoLimit = std::numeric_limits<int>::max();

TEST(RequestSettings, Defaults) {
  const RequestSettings settings{Properties()};
  const Waits waits = {milliseconds(500),  milliseconds(750),  milliseconds(1000),
                       milliseconds(1500), milliseconds(2000), milliseconds(3000)};
  EXPECT_EQ(settings.port, 427);
  EXPECT_EQ(settings.mtu, 1400U);
  EXPECT_EQ(settings.unicast.tries, waits);
  EXPECT_EQ(settings.unicast.maximum, milliseconds(5000));
  EXPECT_EQ(settings.multicast.tries, waits);
  EXPECT_EQ(settings.multicast.maximum, milliseconds(15000));
  EXPECT_EQ(settings.multicast_ttl, 255);
  EXPECT_FALSE(settings.broadcast_only);
  EXPECT_EQ(settings.broadcast_address, asio::ip::address_v4::broadcast());
  EXPECT_EQ(settings.interfaces, Strings());
  EXPECT_EQ(settings.scopes, "DEFAULT");
  EXPECT_EQ(settings.maximum_results, kNoLimit);
  EXPECT_TRUE(settings.watch_process);
}

TEST(RequestSettings, EveryPropertyInItsPlace) {
  Properties properties;
  properties.Set("net.slp.port", "4270");
  properties.Set("net.slp.MTU", "1000");
  properties.Set("net.slp.unicastTimeouts", "1,2");
  properties.Set("net.slp.unicastMaximumWait", "3");
  properties.Set("net.slp.multicastTimeouts", "4");
  properties.Set("net.slp.multicastMaximumWait", "5");
  properties.Set("net.slp.multicastTTL", "6");
  properties.Set("net.slp.isBroadcastOnly", "true");
  properties.Set("net.slp.broadcastAddr", "192.0.2.255");
  properties.Set("net.slp.interfaces", "eth0,192.0.2.1");
  properties.Set("net.slp.useScopes", " A , B ");
  properties.Set("net.slp.maxResults", "7");
  properties.Set("net.slp.watchRegistrationPID", "false");
  const RequestSettings settings(properties);
  EXPECT_EQ(settings.port, 4270);
  EXPECT_EQ(settings.mtu, 1000U);
  EXPECT_EQ(settings.unicast.tries, (Waits{milliseconds(1), milliseconds(2)}));
  EXPECT_EQ(settings.unicast.maximum, milliseconds(3));
  EXPECT_EQ(settings.multicast.tries, Waits{milliseconds(4)});
  EXPECT_EQ(settings.multicast.maximum, milliseconds(5));
  EXPECT_EQ(settings.multicast_ttl, 6);
  EXPECT_TRUE(settings.broadcast_only);
  EXPECT_EQ(settings.broadcast_address, asio::ip::make_address_v4("192.0.2.255"));
  EXPECT_EQ(settings.interfaces, (Strings{"eth0", "192.0.2.1"}));
  EXPECT_EQ(settings.scopes, "A,B");
  EXPECT_EQ(settings.maximum_results, 7);
  EXPECT_FALSE(settings.watch_process);
}

TEST(RequestSettings, WhatMakesNoSenseIsTheDefault) {
  Properties properties;
  properties.Set("net.slp.broadcastAddr", "everyone");
  properties.Set("net.slp.useScopes", ",");
  properties.Set("net.slp.maxResults", "0");
  const RequestSettings settings(properties);
  EXPECT_EQ(settings.broadcast_address, asio::ip::address_v4::broadcast());
  EXPECT_EQ(settings.scopes, "DEFAULT");
  EXPECT_EQ(settings.maximum_results, kNoLimit);
}

}  // namespace
}  // namespace slp::client
