#include "host_addresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "address_option.h"

namespace kelsd_tool {
namespace {

TEST(HostAddresses, HoldTheLoopbackAddress) {
  const std::vector<std::string> addresses = HostAddresses();
  EXPECT_THAT(addresses, testing::Contains("127.0.0.1"));
  for (const std::string& address : addresses) {
    EXPECT_TRUE(IsIpAddress(address)) << address;
  }
}

}  // namespace
}  // namespace kelsd_tool
