#include "slpd/server/sender_origin.h"

#include <gtest/gtest.h>

#include <string>

namespace slp {
namespace {

using asio::ip::make_address;

Interface Of(const std::string& address, const std::string& netmask) {
  Interface interface;
  interface.name = "eth0";
  interface.address = make_address(address);
  interface.netmask = make_address(netmask);
  interface.up = true;
  return interface;
}

RequestOrigin From(const std::string& address, Transport transport = Transport::kUdpUnicast) {
  const std::vector<Interface> interfaces{Of("10.0.0.1", "255.255.255.0"),
                                          Of("fd00:77::1", "ffff:ffff:ffff:ffff::"),
                                          Of("fe80::1%2", "ffff:ffff:ffff:ffff::")};
  Sender sender;
  sender.address = make_address(address);
  sender.transport = transport;
  return OriginOf(sender, interfaces, NetworkList());
}

TEST(SenderOrigin, AnIpv4AddressOfThisHostOrALoopbackAddressIsTheOwnHost) {
  for (const char* address : {"10.0.0.1", "127.0.0.1", "127.1.2.3", "::1", "::ffff:10.0.0.1"}) {
    EXPECT_TRUE(From(address).own_host) << address;
    EXPECT_TRUE(From(address).own_network) << address;
  }
}

// Another host may send under any address of IPv6 but ::1.
TEST(SenderOrigin, AnIpv6AddressOfThisHostIsTheOwnHostByTcpAlone) {
  for (const char* address : {"fd00:77::1", "fe80::1%2"}) {
    for (const Transport transport : {Transport::kUdpUnicast, Transport::kUdpMulticast}) {
      EXPECT_FALSE(From(address, transport).own_host) << address;
      EXPECT_TRUE(From(address, transport).own_network) << address;
      EXPECT_FALSE(From(address, transport).beyond_link) << address;
    }
    EXPECT_TRUE(From(address, Transport::kTcp).own_host) << address;
  }
}

TEST(SenderOrigin, OthersAreOfTheOwnNetworksOrBeyondThem) {
  for (const char* address : {"10.0.0.2", "fd00:77::2", "fe80::2%2"}) {
    EXPECT_FALSE(From(address, Transport::kTcp).own_host) << address;
    EXPECT_TRUE(From(address).own_network) << address;
  }
  for (const char* address : {"10.0.1.2", "fd00:78::2"}) {
    EXPECT_FALSE(From(address, Transport::kTcp).own_host) << address;
    EXPECT_FALSE(From(address).own_network) << address;
  }
}

}  // namespace
}  // namespace slp
