#include "text/ipv4_address.h"

#include <gtest/gtest.h>

namespace slp {
namespace {

TEST(Ipv4AddressTest, TakesFourNumbersAndNothingElse) {
  for (const char* text : {"0.0.0.0", "10.0.0.1", "255.255.255.255"}) {
    EXPECT_TRUE(IsIpv4Address(text)) << text;
  }
  for (const char* text : {"", "10.0.0", "10.0.0.", "10.0.0.1.", "10.0.0.256", "10.0.0.-1", "10.0.0.+1",
                           "10.0.0.1 ", " 10.0.0.1", "a.b.c.d", "::1", "10..0.1", "10.0.0.99999999999",
                           "10.0.0.010", "010.0.0.1", "10.00.0.1", "10.0.0.01"}) {
    EXPECT_FALSE(IsIpv4Address(text)) << text;
  }
}

}  // namespace
}  // namespace slp
