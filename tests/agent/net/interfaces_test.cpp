#include "net/interfaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

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
  for (const Interface& interface : EnumerateInterfaces()) {
    if (interface.address == asio::ip::address_v4::loopback()) {
      EXPECT_TRUE(interface.loopback);
      EXPECT_TRUE(interface.up);
      EXPECT_FALSE(interface.name.empty());
      EXPECT_EQ(interface.netmask, make_address_v4("255.0.0.0"));
      loopback.push_back(interface);
    }
  }
  EXPECT_EQ(loopback.size(), 1U);
  EXPECT_EQ(SelectInterfaces(EnumerateInterfaces(), {"127.0.0.1"}), (InterfaceSelection{loopback, {}}));
}

}  // namespace
}  // namespace slp
