#include "text/ip_address.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

using Ipv6Bytes = std::array<std::uint8_t, 16>;

struct Ipv6Row {
  const char* text;
  Ipv6Bytes bytes;
};

TEST(IpAddressTest, ReadsEveryFormOfAnIpv6Address) {
  const Ipv6Row rows[] = {
      {"::", {}},
      {"::1", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {"1::", {0, 1}},
      {"fe80::1", {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {"FE80:0:0:0:0:0:0:1", {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {"fe80::1%eth0", {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {"2001:db8::ff00:42:8329", {0x20, 1, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0x42, 0x83, 0x29}},
      {"1:2:3:4:5:6:7::", {0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0, 0}},
      {"::ffff:10.0.0.7", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 10, 0, 0, 7}},
      {"1:2:3:4:5:6:255.0.0.1", {0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6, 255, 0, 0, 1}},
  };
  for (const Ipv6Row& row : rows) {
    EXPECT_EQ(ParseIpv6Address(row.text), row.bytes) << row.text;
    EXPECT_TRUE(IsIpAddress(row.text)) << row.text;
  }
}

TEST(IpAddressTest, AnythingElseIsNone) {
  for (const char* text : {"",
                           ":",
                           ":::",
                           "1",
                           "1:2:3:4:5:6:7",
                           "1:2:3:4:5:6:7:8:9",
                           "1:2:3:4:5:6:7:8::",
                           "1::2::3",
                           "12345::",
                           "g::",
                           "::1:",
                           ":1::",
                           "1:2:3:4:5:6:7:",
                           "::10.0.0",
                           "::10.0.0.1:1",
                           "10.0.0.1::",
                           "1:2:3:4:5:6:7:10.0.0.1",
                           "[::1]",
                           " ::1",
                           "::1 ",
                           "+1::",
                           "-1::",
                           "0x1::",
                           "host",
                           "%eth0"}) {
    EXPECT_EQ(ParseIpv6Address(text), std::nullopt) << text;
    EXPECT_FALSE(IsIpAddress(text)) << text;
  }
  EXPECT_EQ(ParseIpv6Address("10.0.0.1"), std::nullopt);
  EXPECT_TRUE(IsIpAddress("10.0.0.1"));
}

TEST(IpAddressTest, ComparesAddressesAndNotTexts) {
  EXPECT_TRUE(SameIpAddress("fe80::1%eth0", "FE80:0::1"));
  EXPECT_TRUE(SameIpAddress("10.0.0.1", "10.0.0.1"));
  EXPECT_FALSE(SameIpAddress("fe80::1", "fe80::2"));
  EXPECT_FALSE(SameIpAddress("fe80::1", "10.0.0.1"));
  EXPECT_FALSE(SameIpAddress("10.0.0.1", "fe80::1"));
  EXPECT_FALSE(SameIpAddress("::1", "host"));
}

TEST(IpAddressTest, KnowsLoopbackAddresses) {
  for (const char* address : {"127.0.0.1", "127.255.255.254", "::1"}) {
    EXPECT_TRUE(IsLoopbackAddress(address)) << address;
  }
  for (const char* address : {"", "12.7.0.1", "128.0.0.1", "::", "::12"}) {
    EXPECT_FALSE(IsLoopbackAddress(address)) << address;
  }
}

TEST(IpAddressTest, AHostOfAUrlHasBracketsAndNoZone) {
  EXPECT_EQ(UrlHost("10.0.0.1"), "10.0.0.1");
  EXPECT_EQ(UrlHost(""), "");
  EXPECT_EQ(UrlHost("2001:db8::1"), "[2001:db8::1]");
  EXPECT_EQ(UrlHost("fe80::1%eth0"), "[fe80::1]");
  EXPECT_EQ(WithoutZone("fe80::1%eth0"), "fe80::1");
}

}  // namespace
}  // namespace slp
