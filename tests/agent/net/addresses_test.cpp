#include "net/addresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace slp {
namespace {

using asio::ip::address;
using asio::ip::address_v6;
using asio::ip::make_address;
using testing::ElementsAre;

address_v6 OnLink(const char* text, std::uint32_t index) {
  return address_v6(make_address(text).to_v6().to_bytes(), index);
}

TEST(AddressesTest, TheGroupsOfIpv6) {
  EXPECT_EQ(Ipv6Group(GroupReach::kLink, kAgentsGroup), make_address("ff02::116"));
  EXPECT_EQ(Ipv6Group(GroupReach::kSite, 0x113FF), make_address("ff05::1:13ff"));
  EXPECT_THAT(GroupsFor(make_address("10.0.0.1")), ElementsAre(make_address("239.255.255.253")));
  EXPECT_THAT(GroupsFor(make_address("fe80::1")),
              ElementsAre(make_address("ff02::116"), make_address("ff05::116"), make_address("ff02::123"),
                          make_address("ff05::123")));
}

TEST(AddressesTest, ReadsAddressesOfBothVersions) {
  for (const char* text : {"10.0.0.1", "::1", "2001:db8::7", "fe80::1"}) {
    EXPECT_EQ(ParseAnyAddress(text), make_address(text)) << text;
  }
  EXPECT_EQ(ParseAnyAddress("::ffff:10.0.0.1"), make_address("10.0.0.1"));
  for (const char* text : {"", "1.2.3", "[::1]", "host", "fe80::1%", "fe80::1%nosuchinterface"}) {
    EXPECT_EQ(ParseAnyAddress(text), std::nullopt) << text;
  }
}

TEST(AddressesTest, Ipv6OnlyWhereItIsInUse) {
  EXPECT_EQ(ParseUsableAddress("::1", true), make_address("::1"));
  EXPECT_EQ(ParseUsableAddress("::1", false), std::nullopt);
  EXPECT_EQ(ParseUsableAddress("10.0.0.1", false), make_address("10.0.0.1"));
}

TEST(AddressesTest, PlainAddressesCompare) {
  EXPECT_EQ(Plain(make_address("::ffff:10.0.0.1")), make_address("10.0.0.1"));
  EXPECT_EQ(Plain(OnLink("2001:db8::1", 3)), make_address("2001:db8::1"));
  EXPECT_EQ(Plain(OnLink("fe80::1", 3)), address(OnLink("fe80::1", 3)));
  EXPECT_NE(Plain(OnLink("fe80::1", 3)), address(OnLink("fe80::1", 4)));
  EXPECT_EQ(Plain(make_address("10.0.0.1")), make_address("10.0.0.1"));
}

TEST(AddressesTest, OtherHostsAreToldNoZone) {
  EXPECT_EQ(WithoutZone(OnLink("fe80::1", 3)), "fe80::1");
  EXPECT_EQ(WithoutZone(make_address("10.0.0.1")), "10.0.0.1");
}

}  // namespace
}  // namespace slp
