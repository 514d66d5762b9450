#include "address_option.h"

#include <gtest/gtest.h>

namespace kelsd_tool {
namespace {

TEST(AddressOption, TakesAddressesOnly) {
  for (const char* address :
       {"10.0.0.5", "0.0.0.0", "255.255.255.255", "::1", "fe80::1%eth0", "2001:DB8::a"}) {
    EXPECT_TRUE(IsIpAddress(address)) << address;
  }
  for (const char* other :
       {"", "server1", "10.0.0", "10.0.0.5.6", "10.0.0.256", "10.0.0.", "10..0.5", "10.0.0.5 ", "1.2.3.0004",
        "10.0.0.05", "010.0.0.5", "a.b.c.d", "-1.2.3.4", "ab:cd", "http://h", "::g", "10.0.0.5:427"}) {
    EXPECT_FALSE(IsIpAddress(other)) << other;
  }
}

TEST(AddressOption, SaysWhatIsWrong) {
  EXPECT_EQ(IpAddressOnly()(std::string("10.0.0.5")), "");
  EXPECT_EQ(IpAddressOnly()(std::string("server1")),
            "'server1' is no IP address, and SLP looks up no names; e.g. 10.0.0.5");
}

}  // namespace
}  // namespace kelsd_tool
