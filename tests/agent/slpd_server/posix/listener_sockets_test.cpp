// What the system knows of the daemon's sockets: what a later plan changes about those of places that stay,
// and that no program gets them. By real sockets on the loopback interface.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>

#include "agent/slpd_server/bytes.h"
#include "agent/slpd_server/client.h"
#include "agent/slpd_server/listening.h"
#include "net/addresses.h"
#include "net/listen_sockets.h"
#include "net/native_socket.h"
#include "support/free_port.h"

namespace slp {
namespace {

using asio::ip::make_address;
using asio::ip::udp;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class ListenerSocketsTest : public ListeningTest {
 protected:
  /// Whether a request that is sent to the broadcast address is answered, by the place.
  bool IsBroadcastHeard() {
    asio::io_context io;
    udp::socket socket(io, {make_address("127.0.0.1"), 0});
    socket.set_option(asio::socket_base::broadcast(true));
    socket.send_to(asio::buffer(content_), {plan_.broadcast, plan_.port});
    udp::endpoint replier;
    Bytes reply(100);
    if (!WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, std::chrono::seconds(5))) {
      return false;
    }
    reply.resize(socket.receive_from(asio::buffer(reply), replier));
    return reply == content_ && replier == udp::endpoint(make_address("127.0.0.1"), plan_.port);
  }

  /// How many hops are left to what is sent to the group, as a member of this host sees it.
  std::optional<int> HopsOfGroupMessages() {
    asio::io_context io;
    udp::socket member(io);
    const int on = 1;
    if (OpenGroupSocket(member, kMulticastGroup, plan_.port, asio::ip::address_v4::loopback()) ||
        ::setsockopt(member.native_handle(), IPPROTO_IP, IP_RECVTTL, &on, sizeof on) != 0) {
      return std::nullopt;
    }
    loop_.Do([this] { listeners_->SendToAll(false, [this](const asio::ip::address&) { return content_; }); });
    if (!WaitUntilReady(member.native_handle(), AwaitedSocket::For::kReading, std::chrono::seconds(5))) {
      return std::nullopt;
    }
    return HopsOfNext(member.native_handle());
  }

  static std::optional<int> HopsOfNext(int socket) {
    std::array<char, 100> bytes{};
    iovec content{bytes.data(), bytes.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const cmsghdr* const header =
        ::recvmsg(socket, &message, MSG_DONTWAIT) < 0 ? nullptr : CMSG_FIRSTHDR(&message);
    if (header == nullptr || header->cmsg_level != IPPROTO_IP || header->cmsg_type != IP_TTL) {
      return std::nullopt;
    }
    int hops = 0;
    std::memcpy(&hops, CMSG_DATA(header), sizeof hops);
    return hops;
  }

  ListenPlan plan_{
      {{make_address("127.0.0.1"), "lo", true, 0, make_address("255.0.0.0")}}, support::FreePort(), 255, {}};
  const Bytes content_ = {2, 1, 0, 0};
};

TEST_F(ListenerSocketsTest, ABroadcastSocketThatCouldNotBeOpenedIsTriedAgain) {
  plan_.broadcast = make_address("127.255.255.255");
  {
    asio::io_context io;
    const udp::socket holder(io, {plan_.broadcast, plan_.port});
    for (int time = 0; time < 2; ++time) {
      ASSERT_TRUE(Apply(plan_));
      EXPECT_THAT(problems_, ElementsAre(StartsWith("broadcast requests to 127.255.255.255 are not heard: ")))
          << "as long as it is so";
    }
  }
  ASSERT_TRUE(Apply(plan_));
  EXPECT_THAT(problems_, IsEmpty());
  EXPECT_TRUE(IsBroadcastHeard());
}

TEST_F(ListenerSocketsTest, HopsThatChangeReachThePlacesThatStay) {
  plan_.multicast_hops = 7;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_EQ(HopsOfGroupMessages(), 7);
  plan_.multicast_hops = 3;
  ASSERT_TRUE(Apply(plan_));
  EXPECT_EQ(HopsOfGroupMessages(), 3);
}

/// How many descriptors of sockets at this port the process has; whether a started program would inherit any.
std::pair<int, bool> SocketsAt(std::uint16_t port) {
  std::pair<int, bool> found{0, false};
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    const int descriptor = std::stoi(entry.path().filename());
    udp::endpoint local;
    auto size = static_cast<socklen_t>(local.capacity());
    if (::getsockname(descriptor, local.data(), &size) == 0 && size == local.size() && local.port() == port) {
      ++found.first;
      found.second = found.second || (::fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0;
    }
  }
  return found;
}

TEST_F(ListenerSocketsTest, NoProgramInheritsThem) {
  plan_.broadcast = make_address("127.255.255.255");
  ASSERT_TRUE(Apply(plan_));
  TcpClient client({make_address("127.0.0.1"), plan_.port});
  ASSERT_TRUE(client.Send(BytesOf(7, SrvTypeRqst{})));
  ASSERT_TRUE(client.Receive());
  const auto unicast_group_broadcast_acceptor_and_accepted = std::pair(5, false);
  EXPECT_EQ(SocketsAt(plan_.port), unicast_group_broadcast_acceptor_and_accepted);
}

}  // namespace
}  // namespace slp
