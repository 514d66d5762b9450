#include "net/datagram_socket.h"

#include <gtest/gtest.h>

#include "net/addresses.h"
#include "net/listen_sockets.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using asio::ip::udp;
using namespace std::chrono_literals;

const auto kLoopback = asio::ip::address_v4::loopback();
const std::vector<std::uint8_t> kContent = {1, 2, 3};

class DatagramSocketTest : public testing::Test {
 protected:
  DatagramSocketTest() { EXPECT_FALSE(OpenUnicastSocket(peer_, {kLoopback, 0}, 1)); }

  std::uint16_t port() { return peer_.local_endpoint().port(); }

  /// What reaches `socket` within two seconds, and its sender.
  static std::vector<std::uint8_t> Arrival(udp::socket& socket, udp::endpoint& from) {
    WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, 2s);
    std::vector<std::uint8_t> bytes(100);
    asio::error_code error;
    bytes.resize(socket.receive_from(asio::buffer(bytes), from, 0, error));
    return bytes;
  }

  asio::io_context io_;
  udp::socket peer_{io_};
};

TEST_F(DatagramSocketTest, MulticastReachesTheGroupOnItsInterface) {
  udp::socket group(io_);
  ASSERT_FALSE(OpenGroupSocket(group, kMulticastGroup, port(), kLoopback));
  auto socket = DatagramSocket::ForMulticast(io_, kLoopback, 1);
  ASSERT_TRUE(socket);
  ASSERT_TRUE(socket->SendTo(kContent, {kMulticastGroup, port()}));
  udp::endpoint from;
  EXPECT_EQ(Arrival(group, from), kContent);
  EXPECT_EQ(from.address(), asio::ip::address(kLoopback));
}

TEST_F(DatagramSocketTest, AnAddressThatIsNotOurs) {
  const auto foreign = asio::ip::make_address_v4("192.0.2.1");
  EXPECT_FALSE(DatagramSocket::ForMulticast(io_, foreign, 1));
}

TEST_F(DatagramSocketTest, ABroadcastFromAnAddressThatIsNotOurs) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << "Wine binds a datagram socket to any address";
  }
  EXPECT_FALSE(DatagramSocket::ForBroadcast(io_, asio::ip::make_address_v4("192.0.2.1")));
}

}  // namespace
}  // namespace slp
