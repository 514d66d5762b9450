#include "net/interfaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#include "support/ipv6.h"

namespace slp {

void PrintTo(const Interface& interface, std::ostream* out) {
  *out << interface.name << ' ' << interface.address << '/' << interface.netmask << " up=" << interface.up
       << " multicast=" << interface.multicast << " loopback=" << interface.loopback;
}

namespace {

using asio::ip::make_address_v4;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const Interface kLoopback{"lo", make_address_v4("127.0.0.1"), make_address_v4("255.0.0.0"), true, false,
                          true};
const Interface kWired{"eth0", make_address_v4("192.0.2.10"), make_address_v4("255.255.255.0"), true, true,
                       false};
const Interface kWiredAlias{
    "eth0", make_address_v4("192.0.2.11"), make_address_v4("255.255.255.0"), true, true, false};
const Interface kWireless{
    "Wi-Fi", make_address_v4("198.51.100.7"), make_address_v4("255.255.0.0"), true, true, false};
const Interface kDown{"eth1", make_address_v4("203.0.113.1"), make_address_v4("255.255.255.0"), false, true,
                      false};
const Interface kPointToPoint{
    "tun0", make_address_v4("10.8.0.2"), make_address_v4("255.255.255.255"), true, false, false};

asio::ip::address OnLink(const char* text, std::uint32_t index) {
  return asio::ip::address_v6(asio::ip::make_address_v6(text).to_bytes(), index);
}

Interface Ipv6(const char* name, const asio::ip::address& address, const char* netmask, std::uint32_t index) {
  return {name, address, asio::ip::make_address(netmask), true, true, false, index};
}

const Interface kLoopback6{"lo",
                           asio::ip::address_v6::loopback(),
                           asio::ip::make_address("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"),
                           true,
                           false,
                           true,
                           1};
const Interface kWired6 = Ipv6("eth0", asio::ip::make_address("2001:db8::5"), "ffff:ffff:ffff:ffff::", 2);
const Interface kWiredLink = Ipv6("eth0", OnLink("fe80::1", 2), "ffff:ffff:ffff:ffff::", 2);
const Interface kWirelessLink = Ipv6("Wi-Fi", OnLink("fe80::1", 3), "ffff:ffff:ffff:ffff::", 3);

std::vector<Interface> Ipv6Host() {
  return {kLoopback, kWired, kLoopback6, kWired6, kWiredLink, kWirelessLink};
}

std::vector<Interface> Host() {
  return {kLoopback, kWired, kWiredAlias, kWireless, kDown, kPointToPoint};
}

TEST(SelectInterfaces, NothingWantedIsAllThatCanMulticastAndThenLoopback) {
  EXPECT_EQ(SelectInterfaces(Host(), {}),
            (InterfaceSelection{{kWired, kWiredAlias, kWireless, kLoopback}, {}}));
}

TEST(SelectInterfaces, NothingWantedOnAHostWithoutNetworkIsLoopback) {
  EXPECT_EQ(SelectInterfaces({kLoopback, kDown}, {}), (InterfaceSelection{{kLoopback}, {}}));
}

TEST(SelectInterfaces, NamesAndAddressesInTheOrderWanted) {
  EXPECT_EQ(SelectInterfaces(Host(), {"198.51.100.7", "127.0.0.1", "ETH0"}),
            (InterfaceSelection{{kWireless, kLoopback, kWired, kWiredAlias}, {}}));
}

TEST(SelectInterfaces, NamesCompareWithoutRegardToCaseAndOuterBlanks) {
  EXPECT_EQ(SelectInterfaces(Host(), {" wi-fi "}), (InterfaceSelection{{kWireless}, {}}));
}

TEST(SelectInterfaces, EachOnce) {
  EXPECT_EQ(SelectInterfaces(Host(), {"192.0.2.10", "eth0", "192.0.2.10"}),
            (InterfaceSelection{{kWired, kWiredAlias}, {}}));
}

TEST(SelectInterfaces, AnInterfaceWithoutMulticastIsTakenWhenNamed) {
  EXPECT_EQ(SelectInterfaces(Host(), {"tun0"}), (InterfaceSelection{{kPointToPoint}, {}}));
}

TEST(SelectInterfaces, AnyLoopbackAddress) {
  Interface second = kLoopback;
  second.address = make_address_v4("127.0.0.2");
  EXPECT_EQ(SelectInterfaces(Host(), {"127.0.0.2", "127.0.0.1"}),
            (InterfaceSelection{{second, kLoopback}, {}}));
}

TEST(SelectInterfaces, WhatTheHostHasNotIsReported) {
  EXPECT_EQ(SelectInterfaces(Host(), {"eth7", "eth1", "192.0.2.99", "eth0"}),
            (InterfaceSelection{{kWired, kWiredAlias}, {"eth7", "eth1", "192.0.2.99"}}));
  EXPECT_EQ(SelectInterfaces({kWired}, {"127.0.0.2"}), (InterfaceSelection{{}, {"127.0.0.2"}}));
}

TEST(SelectInterfaces, AddressesOfBothVersions) {
  const std::vector<Interface> host = Ipv6Host();
  EXPECT_EQ(SelectInterfaces(host, {}),
            (InterfaceSelection{{kWired, kWired6, kWiredLink, kWirelessLink, kLoopback, kLoopback6}, {}}));
  EXPECT_EQ(SelectInterfaces(host, {"eth0"}), (InterfaceSelection{{kWired, kWired6, kWiredLink}, {}}));
  EXPECT_EQ(SelectInterfaces(host, {"::1", "2001:DB8:0::5"}),
            (InterfaceSelection{{kLoopback6, kWired6}, {}}));
  EXPECT_EQ(SelectInterfaces(host, {"fe80::1"}), (InterfaceSelection{{kWiredLink, kWirelessLink}, {}}));
  EXPECT_EQ(SelectInterfaces(host, {"2001:db8::6", "127.0.0.1"}),
            (InterfaceSelection{{kLoopback}, {"2001:db8::6"}}));
  EXPECT_EQ(SelectInterfaces(Host(), {"::1"}), (InterfaceSelection{{}, {"::1"}}));
}

TEST(OnSomeLink, OnlyAnAddressOfALinkWithoutAZoneGetsOne) {
  const std::vector<Interface> host = Ipv6Host();
  EXPECT_EQ(OnSomeLink(host, asio::ip::make_address("fe80::9")), OnLink("fe80::9", 2));
  EXPECT_EQ(OnSomeLink(host, OnLink("fe80::9", 3)), OnLink("fe80::9", 3));
  EXPECT_EQ(OnSomeLink(host, asio::ip::make_address("2001:db8::9")), asio::ip::make_address("2001:db8::9"));
  EXPECT_EQ(OnSomeLink(host, make_address_v4("192.0.2.9")), make_address_v4("192.0.2.9"));
  EXPECT_EQ(OnSomeLink(Host(), asio::ip::make_address("fe80::9")), asio::ip::make_address("fe80::9"));
}

TEST(IsOwnAddress, OfIpv6WithTheLinkItBelongsTo) {
  EXPECT_TRUE(IsOwnAddress({}, asio::ip::make_address("::1")));
  EXPECT_TRUE(IsOwnAddress(Ipv6Host(), asio::ip::make_address("2001:db8::5")));
  EXPECT_TRUE(IsOwnAddress(Ipv6Host(), OnLink("fe80::1", 3)));
  EXPECT_FALSE(IsOwnAddress(Ipv6Host(), OnLink("fe80::1", 4)));
  EXPECT_FALSE(IsOwnAddress(Ipv6Host(), asio::ip::make_address("2001:db8::6")));
}

TEST(IsOnOwnNetwork, OfIpv6) {
  EXPECT_TRUE(IsOnOwnNetwork(Ipv6Host(), asio::ip::make_address("2001:db8::ffff:1")));
  EXPECT_FALSE(IsOnOwnNetwork(Ipv6Host(), asio::ip::make_address("2001:db8:0:1::5")));
  EXPECT_TRUE(IsOnOwnNetwork(Ipv6Host(), OnLink("fe80::77", 2)));
  EXPECT_FALSE(IsOnOwnNetwork(Ipv6Host(), OnLink("fe80::77", 9)));
  EXPECT_FALSE(IsOnOwnNetwork(Host(), asio::ip::make_address("2001:db8::5")));
}

TEST(IsOwnAddress, TheHostsAddressesAndLoopback) {
  EXPECT_TRUE(IsOwnAddress(Host(), make_address_v4("192.0.2.11")));
  EXPECT_TRUE(IsOwnAddress({}, make_address_v4("127.3.2.1")));
  EXPECT_FALSE(IsOwnAddress(Host(), make_address_v4("192.0.2.12")));
}

TEST(IsOnOwnNetwork, NetworksOfInterfacesThatAreUp) {
  EXPECT_TRUE(IsOnOwnNetwork(Host(), make_address_v4("192.0.2.254")));
  EXPECT_TRUE(IsOnOwnNetwork(Host(), make_address_v4("198.51.200.1")));
  EXPECT_TRUE(IsOnOwnNetwork(Host(), make_address_v4("10.8.0.2")));
  EXPECT_FALSE(IsOnOwnNetwork(Host(), make_address_v4("10.8.0.3")));
  EXPECT_FALSE(IsOnOwnNetwork(Host(), make_address_v4("192.0.3.1")));
  EXPECT_FALSE(IsOnOwnNetwork(Host(), make_address_v4("203.0.113.9")));
}

TEST(EnumerateInterfaces, FindsTheLoopbackInterface) {
  std::vector<Interface> loopback;
  const std::vector<Interface> all = EnumerateInterfaces().value();
  for (const Interface& interface : all) {
    if (interface.address == asio::ip::address_v4::loopback()) {
      EXPECT_TRUE(interface.loopback);
      EXPECT_TRUE(interface.up);
      EXPECT_FALSE(interface.name.empty());
      EXPECT_EQ(interface.netmask, make_address_v4("255.0.0.0"));
      loopback.push_back(interface);
    }
  }
  EXPECT_EQ(loopback.size(), 1U);
  EXPECT_EQ(SelectInterfaces(all, {"127.0.0.1"}), (InterfaceSelection{loopback, {}}));
}

TEST(EnumerateInterfaces, HasAddressesOfIpv6OnlyWhenAsked) {
  std::vector<Interface> loopback;
  const std::vector<Interface> all = EnumerateInterfaces(true).value();
  for (const Interface& interface : all) {
    EXPECT_EQ(interface.address.is_v6(), interface.netmask.is_v6()) << interface.name;
    EXPECT_NE(interface.index, 0U) << interface.name;
    if (interface.address == asio::ip::address_v6::loopback()) {
      loopback.push_back(interface);
    }
  }
  const std::vector<Interface> ipv4 = EnumerateInterfaces().value();
  for (const Interface& interface : ipv4) {
    EXPECT_TRUE(interface.address.is_v4()) << interface.name;
  }
  if (!support::HasIpv6()) {
    GTEST_SKIP() << support::kNoIpv6;
  }
  EXPECT_EQ(SelectInterfaces(all, {"::1"}), (InterfaceSelection{loopback, {}}));
  ASSERT_EQ(loopback.size(), 1U);
  EXPECT_TRUE(loopback[0].up);
  EXPECT_TRUE(loopback[0].loopback);
  EXPECT_EQ(loopback[0].netmask, asio::ip::make_address("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff"));
}

}  // namespace
}  // namespace slp
