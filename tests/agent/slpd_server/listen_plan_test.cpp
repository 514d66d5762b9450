#include "slpd/server/listen_plan.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

using asio::ip::make_address;
using asio::ip::make_address_v4;

const asio::ip::address kLoMask = make_address("255.0.0.0");
const asio::ip::address kMask = make_address("255.255.255.0");
const asio::ip::address kMask6 = make_address("ffff:ffff:ffff:ffff::");
const asio::ip::address kLoMask6 = make_address("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");

const std::vector<Interface> kHost{
    {"lo", make_address_v4("127.0.0.1"), kLoMask, true, false, true},
    {"eth0", make_address_v4("10.0.0.5"), kMask, true, true, false},
    {"eth1", make_address_v4("10.0.1.5"), kMask, true, true, false},
};

struct Row {
  std::string interfaces;
  std::vector<ListenPlace> places;
  bool broadcast;
  std::vector<std::string> problems;
};

TEST(ListenPlan, ChoosesWhatTheInterfacesSettingSays) {
  const ListenPlace implicit_loopback{make_address("127.0.0.1"), "loopback", false};
  const Row rows[] = {
      {"",
       {{make_address("10.0.0.5"), "eth0", true, 0, kMask},
        {make_address("10.0.1.5"), "eth1", true, 0, kMask},
        {make_address("127.0.0.1"), "lo", true, 0, kLoMask}},
       true,
       {}},
      {"10.0.1.5", {{make_address("10.0.1.5"), "eth1", true, 0, kMask}, implicit_loopback}, true, {}},
      {"ETH0", {{make_address("10.0.0.5"), "eth0", true, 0, kMask}, implicit_loopback}, true, {}},
      {"127.0.0.1", {{make_address("127.0.0.1"), "lo", true, 0, kLoMask}}, false, {}},
      {"10.9.9.9,10.0.0.5",
       {{make_address("10.0.0.5"), "eth0", true, 0, kMask}, implicit_loopback},
       true,
       {"net.slp.interfaces names 10.9.9.9, which is no address or interface of this host that is up; it is "
        "not "
        "served"}},
  };
  for (const Row& row : rows) {
    Properties properties;
    properties.Set("net.slp.interfaces", row.interfaces);
    std::vector<std::string> problems;
    const ListenPlan plan = MakeListenPlan(properties, kHost, problems);
    EXPECT_EQ(plan, (ListenPlan{row.places, 427, 255,
                                row.broadcast ? make_address("255.255.255.255") : asio::ip::address()}))
        << row.interfaces;
    EXPECT_EQ(problems, row.problems) << row.interfaces;
  }
}

TEST(ListenPlan, WithIpv6OneAddressOfAnInterfaceHearsTheGroups) {
  const asio::ip::address link = asio::ip::address_v6(asio::ip::make_address_v6("fe80::5").to_bytes(), 2);
  const asio::ip::address other_link =
      asio::ip::address_v6(asio::ip::make_address_v6("fe80::6").to_bytes(), 3);
  std::vector<Interface> host = kHost;
  host.push_back({"lo", make_address("::1"), kLoMask6, true, false, true, 1});
  host.push_back({"eth0", link, kMask6, true, true, false, 2});
  host.push_back({"eth0", make_address("2001:db8::5"), kMask6, true, true, false, 2});
  host.push_back({"eth0", make_address("2001:db8:1::5"), kMask6, true, true, false, 2});
  host.push_back({"eth1", other_link, kMask6, true, true, false, 3});
  const ListenPlace ipv4_loopback{make_address("127.0.0.1"), "loopback", false};
  const ListenPlace ipv6_loopback{make_address("::1"), "loopback", false, 1};
  const Row rows[] = {
      {"",
       {{make_address("10.0.0.5"), "eth0", true, 0, kMask},
        {make_address("10.0.1.5"), "eth1", true, 0, kMask},
        {link, "eth0", false, 2, kMask6},
        {make_address("2001:db8::5"), "eth0", true, 2, kMask6},
        {make_address("2001:db8:1::5"), "eth0", false, 2, kMask6},
        {other_link, "eth1", true, 3, kMask6},
        {make_address("127.0.0.1"), "lo", true, 0, kLoMask},
        {make_address("::1"), "lo", true, 1, kLoMask6}},
       true,
       {}},
      {"2001:db8:1::5",
       {{make_address("2001:db8:1::5"), "eth0", true, 2, kMask6}, ipv4_loopback, ipv6_loopback},
       false,
       {}},
      {"10.0.1.5",
       {{make_address("10.0.1.5"), "eth1", true, 0, kMask}, ipv4_loopback, ipv6_loopback},
       true,
       {}},
      {"::1", {{make_address("::1"), "lo", true, 1, kLoMask6}}, false, {}},
      {"127.0.0.1", {{make_address("127.0.0.1"), "lo", true, 0, kLoMask}}, false, {}},
  };
  for (const Row& row : rows) {
    Properties properties;
    properties.Set("net.slp.interfaces", row.interfaces);
    std::vector<std::string> problems;
    EXPECT_EQ(MakeListenPlan(properties, host, problems),
              (ListenPlan{row.places, 427, 255,
                          row.broadcast ? make_address("255.255.255.255") : asio::ip::address()}))
        << row.interfaces;
    EXPECT_EQ(problems, row.problems) << row.interfaces;
  }
}

TEST(ListenPlan, ASecondLoopbackAddressKeepsToItself) {
  Properties properties;
  properties.Set("net.slp.interfaces", "127.0.0.2");
  std::vector<std::string> problems;
  const ListenPlan plan = MakeListenPlan(properties, kHost, problems);
  ASSERT_EQ(plan.places.size(), 1U);
  EXPECT_EQ(plan.places[0].address, make_address("127.0.0.2"));
  EXPECT_TRUE(plan.places[0].group);
}

TEST(ListenPlan, TakesPortHopsAndBroadcastAddress) {
  Properties properties;
  properties.Set("net.slp.port", "4270");
  properties.Set("net.slp.multicastTTL", "3");
  properties.Set("net.slp.broadcastAddr", "10.0.0.255");
  std::vector<std::string> problems;
  ListenPlan plan = MakeListenPlan(properties, kHost, problems);
  EXPECT_EQ(plan.port, 4270);
  EXPECT_EQ(plan.multicast_hops, 3);
  EXPECT_EQ(plan.broadcast, make_address("10.0.0.255"));
  EXPECT_EQ(problems, std::vector<std::string>());

  properties.Set("net.slp.broadcastAddr", "nowhere");
  plan = MakeListenPlan(properties, kHost, problems);
  EXPECT_EQ(plan.broadcast, asio::ip::address());
  EXPECT_EQ(problems, std::vector<std::string>{"net.slp.broadcastAddr is no address: nowhere"});
}

}  // namespace
}  // namespace slp
