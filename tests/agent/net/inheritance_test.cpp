// No socket is inherited by programs that the application starts: it would stay open, and a port in use, for
// as long as they run.
#include "agent/net/inheritance.h"

#include <gtest/gtest.h>

#include <asio/io_context.hpp>
#include <chrono>

#include "net/addresses.h"
#include "net/datagram_socket.h"
#include "net/group_socket.h"
#include "net/listen_sockets.h"
#include "net/stream_connection.h"
#include "net/unicast_socket.h"
#include "support/ipv6.h"

namespace slp {
namespace {

using asio::ip::tcp;
using asio::ip::udp;

class InheritanceTest : public testing::Test {
 protected:
  asio::io_context io_;
  const asio::ip::address_v4 local_ = asio::ip::address_v4::loopback();
};

TEST_F(InheritanceTest, SocketsForRequestsAreNotInherited) {
  auto multicast = DatagramSocket::ForMulticast(io_, local_, 1);
  ASSERT_TRUE(multicast);
  EXPECT_FALSE(IsInherited(multicast->native_handle()));
  auto broadcast = DatagramSocket::ForBroadcast(io_, local_);
  ASSERT_TRUE(broadcast);
  EXPECT_FALSE(IsInherited(broadcast->native_handle()));
  const auto unicast = UnicastSocket::ConnectedTo({local_, 9});
  ASSERT_TRUE(unicast);
  EXPECT_FALSE(IsInherited(unicast->native_handle()));
}

TEST_F(InheritanceTest, SocketsForRequestsByIpv6AreNotInherited) {
  if (!support::HasIpv6()) {
    GTEST_SKIP() << support::kNoIpv6;
  }
  auto multicast = DatagramSocket::ForIpv6Multicast(io_, 0, 1);
  ASSERT_TRUE(multicast);
  EXPECT_FALSE(IsInherited(multicast->native_handle()));
  udp::socket groups(io_);
  ASSERT_FALSE(OpenSocketForGroups(groups, 0));
  EXPECT_FALSE(IsInherited(groups.native_handle()));
}

TEST_F(InheritanceTest, SocketsThatListenAreNotInherited) {
  udp::socket unicast(io_);
  ASSERT_FALSE(OpenUnicastSocket(unicast, {local_, 0}, 1));
  EXPECT_FALSE(IsInherited(unicast.native_handle()));
  udp::socket group(io_);
  ASSERT_FALSE(OpenGroupSocket(group, kMulticastGroup, unicast.local_endpoint().port(), local_));
  EXPECT_FALSE(IsInherited(group.native_handle()));
  tcp::acceptor acceptor(io_);
  ASSERT_FALSE(OpenAcceptor(acceptor, {local_, 0}));
  EXPECT_FALSE(IsInherited(acceptor.native_handle()));
}

TEST_F(InheritanceTest, ConnectionsAreNotInherited) {
  tcp::acceptor acceptor(io_);
  ASSERT_FALSE(OpenAcceptor(acceptor, {local_, 0}));
  StreamConnection connection(io_);
  ASSERT_NE(connection.StartConnect(acceptor.local_endpoint()), StreamConnection::Status::kFailed);
  EXPECT_FALSE(IsInherited(connection.native_handle()));
  ASSERT_TRUE(
      WaitUntilReady(acceptor.native_handle(), AwaitedSocket::For::kReading, std::chrono::seconds(2)));
  tcp::socket accepted = acceptor.accept();
  KeepFromStartedPrograms(accepted.native_handle());
  EXPECT_FALSE(IsInherited(accepted.native_handle()));
}

}  // namespace
}  // namespace slp
