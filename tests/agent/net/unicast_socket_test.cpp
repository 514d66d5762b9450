#include "net/unicast_socket.h"

#include <gtest/gtest.h>

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <utility>
#include <vector>

#include "net/listen_sockets.h"
#include "support/under_wine/under_wine.h"

namespace slp {
namespace {

using asio::ip::udp;
using Received = UnicastSocket::Received;
using namespace std::chrono_literals;

using Content = std::vector<std::uint8_t>;

class UnicastSocketTest : public testing::Test {
 protected:
  UnicastSocketTest() { EXPECT_FALSE(OpenUnicastSocket(peer_, {asio::ip::address_v4::loopback(), 0}, 1)); }

  /// What `socket` gets within two seconds.
  static std::pair<Received, Content> Await(UnicastSocket& socket) {
    WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, 2s);
    std::span<const std::uint8_t> bytes;
    const Received received = socket.Receive(bytes);
    return {received, Content(bytes.begin(), bytes.end())};
  }

  /// What reaches `socket` within two seconds, and its sender.
  static Content Arrival(udp::socket& socket, udp::endpoint& from) {
    WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, 2s);
    Content bytes(65536);
    asio::error_code error;
    bytes.resize(socket.receive_from(asio::buffer(bytes), from, 0, error));
    return bytes;
  }

  asio::io_context io_;
  udp::socket peer_{io_};
};

TEST_F(UnicastSocketTest, ExchangesDatagramsOfEveryLength) {
  auto socket = UnicastSocket::ConnectedTo(peer_.local_endpoint());
  ASSERT_TRUE(socket);
  std::span<const std::uint8_t> bytes;
  EXPECT_EQ(socket->Receive(bytes), Received::kNothing);
  for (const Content& content : {Content{1, 2, 3}, Content{}, Content(65507, 7), Content{4}}) {
    ASSERT_TRUE(socket->Send(content));
    udp::endpoint from;
    EXPECT_EQ(Arrival(peer_, from), content);
    peer_.send_to(asio::buffer(content), from);
    EXPECT_EQ(Await(*socket), std::pair(Received::kDatagram, content));
  }
  EXPECT_EQ(socket->Receive(bytes), Received::kNothing);
}

TEST_F(UnicastSocketTest, HearsItsPeerAlone) {
  auto socket = UnicastSocket::ConnectedTo(peer_.local_endpoint());
  ASSERT_TRUE(socket);
  ASSERT_TRUE(socket->Send(Content{1}));
  udp::endpoint from;
  ASSERT_EQ(Arrival(peer_, from), Content{1});
  udp::socket other(io_);
  ASSERT_FALSE(OpenUnicastSocket(other, {asio::ip::address_v4::loopback(), 0}, 1));
  other.send_to(asio::buffer(Content{2}), from);
  peer_.send_to(asio::buffer(Content{3}), from);
  EXPECT_EQ(Await(*socket), std::pair(Received::kDatagram, Content{3}));
}

TEST_F(UnicastSocketTest, ARefusalIsNoticedAndDoesNotStopTheNextDatagram) {
  if (kelsd::support::UnderWine()) {
    GTEST_SKIP() << kelsd::support::kRefusalsUnheard;
  }
  const udp::endpoint nobody = peer_.local_endpoint();
  peer_.close();
  auto socket = UnicastSocket::ConnectedTo(nobody);
  ASSERT_TRUE(socket);
  ASSERT_TRUE(socket->Send(Content{1}));
  EXPECT_EQ(Await(*socket).first, Received::kRefused);
  ASSERT_TRUE(socket->Send(Content{1}));
  WaitUntilReady(socket->native_handle(), AwaitedSocket::For::kReading, 2s);
  ASSERT_TRUE(socket->Send(Content{1}));  // the system tells of the first one's refusal here
  EXPECT_EQ(Await(*socket).first, Received::kRefused);
}

TEST_F(UnicastSocketTest, TakesNothingLongerThanADatagram) {
  auto socket = UnicastSocket::ConnectedTo(peer_.local_endpoint());
  ASSERT_TRUE(socket);
  EXPECT_FALSE(socket->Send(Content(70'000)));
}

TEST_F(UnicastSocketTest, IsMovedWithItsPeer) {
  auto socket = UnicastSocket::ConnectedTo(peer_.local_endpoint());
  ASSERT_TRUE(socket);
  UnicastSocket moved = std::move(*socket);
  ASSERT_TRUE(moved.Send(Content{1}));
  udp::endpoint from;
  EXPECT_EQ(Arrival(peer_, from), Content{1});
}

}  // namespace
}  // namespace slp
