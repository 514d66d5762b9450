#include "net/group_socket.h"

#include <gtest/gtest.h>
#include <net/if.h>

#include <array>
#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <chrono>

#include "net/native_socket.h"
#include "support/ipv6.h"

namespace slp {
namespace {

using asio::ip::udp;

TEST(GroupSocket, TellsWhatADatagramWasSentTo) {
  if (!support::HasIpv6()) {
    GTEST_SKIP() << support::kNoIpv6;
  }
  asio::io_context io;
  udp::socket socket(io);
  ASSERT_FALSE(OpenSocketForGroups(socket, 0));
  const std::uint16_t port = socket.local_endpoint().port();
  udp::socket sender(io, {asio::ip::address_v6::loopback(), 0});
  std::array<std::uint8_t, 8> buffer{};
  GroupDatagram datagram;
  EXPECT_EQ(ReceiveFromGroup(socket, buffer, datagram), asio::error::would_block);
  // A group's datagrams come by networks only; one to the own host tells as much.
  sender.send_to(asio::buffer("abc", 3), {asio::ip::address_v6::loopback(), port});
  WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, std::chrono::seconds(5));
  ASSERT_FALSE(ReceiveFromGroup(socket, buffer, datagram));
  EXPECT_EQ(datagram.size, 3U);
  EXPECT_EQ(datagram.sender, sender.local_endpoint());
  EXPECT_EQ(datagram.group, asio::ip::address_v6::loopback());
  EXPECT_EQ(datagram.interface_index, ::if_nametoindex("lo"));
}

}  // namespace
}  // namespace slp
