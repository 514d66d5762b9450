#include "net/network_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace slp {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool Holds(const std::string& network, const std::string& address) {
  std::vector<std::string> unknown;
  const NetworkList list({network}, unknown);
  EXPECT_THAT(unknown, IsEmpty());
  return list.Contains(asio::ip::make_address(address));
}

TEST(NetworkListTest, HoldsTheAddressesOfItsNetworks) {
  EXPECT_TRUE(Holds("192.0.2.0/24", "192.0.2.0"));
  EXPECT_TRUE(Holds("192.0.2.0/24", "192.0.2.255"));
  EXPECT_FALSE(Holds("192.0.2.0/24", "192.0.3.0"));
  EXPECT_FALSE(Holds("192.0.2.0/24", "192.0.1.255"));
  EXPECT_TRUE(Holds("192.0.2.77/24", "192.0.2.1"));
  EXPECT_TRUE(Holds("10.0.0.1", "10.0.0.1"));
  EXPECT_FALSE(Holds("10.0.0.1", "10.0.0.2"));
  EXPECT_TRUE(Holds("0.0.0.0/0", "203.0.113.5"));
  EXPECT_FALSE(Holds("0.0.0.0/0", "::1"));
}

TEST(NetworkListTest, KnowsBothFamilies) {
  EXPECT_TRUE(Holds("2001:db8::/32", "2001:db8:1::5"));
  EXPECT_FALSE(Holds("2001:db8::/32", "2001:db9::5"));
  EXPECT_TRUE(Holds("fe80::1", "fe80::1"));
  EXPECT_FALSE(Holds("fe80::1", "fe80::2"));
  EXPECT_FALSE(Holds("::/0", "10.0.0.1"));
  EXPECT_TRUE(Holds("10.0.0.0/8", "::ffff:10.0.0.1"));
  EXPECT_FALSE(Holds("::/0", "::ffff:10.0.0.1"));
}

TEST(NetworkListTest, TellsWhatIsNoNetworkAndKeepsTheRest) {
  std::vector<std::string> unknown;
  const NetworkList list({"10.0.0.0/33", "10.0.0/8", "host", "", "10.0.0.0/", "fe80::/129", "10.0.0.0/8"},
                         unknown);
  EXPECT_THAT(unknown, ElementsAre("10.0.0.0/33", "10.0.0/8", "host", "", "10.0.0.0/", "fe80::/129"));
  EXPECT_TRUE(list.Contains(asio::ip::make_address("10.255.0.1")));
  EXPECT_FALSE(NetworkList().Contains(asio::ip::make_address("10.0.0.1")));
}

}  // namespace
}  // namespace slp
