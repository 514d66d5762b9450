#include "net/stream_connection.h"

#include <gtest/gtest.h>

#include <asio/buffer.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <span>
#include <vector>

#include "net/listen_sockets.h"
#include "net/native_socket.h"

namespace slp {
namespace {

using asio::ip::tcp;
using Status = StreamConnection::Status;
using namespace std::chrono_literals;

class StreamConnectionTest : public testing::Test {
 protected:
  StreamConnectionTest() {
    EXPECT_FALSE(OpenAcceptor(acceptor_, {asio::ip::address_v4::loopback(), 0}));
    peer_ = acceptor_.local_endpoint();
  }

  bool Ready(AwaitedSocket::For operation) {
    return WaitUntilReady(connection_.native_handle(), operation, 2s);
  }

  Status Connect() {
    const Status status = connection_.StartConnect(peer_);
    if (status != Status::kBlocked || !Ready(AwaitedSocket::For::kWriting)) {
      return status;
    }
    return connection_.FinishConnect();
  }

  /// The other end of a connection that has been made.
  tcp::socket Accepted() {
    WaitUntilReady(acceptor_.native_handle(), AwaitedSocket::For::kReading, 2s);
    return acceptor_.accept();
  }

  asio::io_context io_;
  tcp::acceptor acceptor_{io_};
  tcp::endpoint peer_;
  StreamConnection connection_{io_};
};

TEST_F(StreamConnectionTest, WritesAndReads) {
  ASSERT_EQ(Connect(), Status::kDone);
  tcp::socket other = Accepted();
  const std::vector<std::uint8_t> sent{1, 2, 3};
  std::span<const std::uint8_t> rest(sent);
  ASSERT_EQ(connection_.Write(rest), Status::kDone);
  EXPECT_TRUE(rest.empty());
  std::vector<std::uint8_t> bytes(3);
  asio::read(other, asio::buffer(bytes));
  EXPECT_EQ(bytes, sent);
  asio::write(other, asio::buffer(bytes));
  ASSERT_TRUE(Ready(AwaitedSocket::For::kReading));
  std::vector<std::uint8_t> back{0};
  ASSERT_EQ(connection_.Read(back, 2), Status::kDone);
  EXPECT_EQ(back, (std::vector<std::uint8_t>{0, 1, 2}));
  ASSERT_EQ(connection_.Read(back, 2), Status::kDone);
  EXPECT_EQ(back, (std::vector<std::uint8_t>{0, 1, 2, 3}));
}

TEST_F(StreamConnectionTest, ARefusedConnectionFails) {
  acceptor_.close();
  EXPECT_EQ(Connect(), Status::kFailed);
}

TEST_F(StreamConnectionTest, SilenceBlocks) {
  ASSERT_EQ(Connect(), Status::kDone);
  std::vector<std::uint8_t> bytes{1};
  EXPECT_EQ(connection_.Read(bytes, 100), Status::kBlocked);
  EXPECT_EQ(bytes, std::vector<std::uint8_t>{1});
}

TEST_F(StreamConnectionTest, APeerThatReadsNothingBlocks) {
  ASSERT_EQ(Connect(), Status::kDone);
  const std::vector<std::uint8_t> more_than_buffers_hold(64U << 20U);
  std::span<const std::uint8_t> rest(more_than_buffers_hold);
  Status status = Status::kDone;
  while (status == Status::kDone && !rest.empty()) {
    status = connection_.Write(rest);
  }
  EXPECT_EQ(status, Status::kBlocked);
  EXPECT_LT(rest.size(), more_than_buffers_hold.size());
}

TEST_F(StreamConnectionTest, APeerThatClosesFails) {
  ASSERT_EQ(Connect(), Status::kDone);
  Accepted().close();
  ASSERT_TRUE(Ready(AwaitedSocket::For::kReading));
  std::vector<std::uint8_t> bytes;
  EXPECT_EQ(connection_.Read(bytes, 1), Status::kFailed);
}

}  // namespace
}  // namespace slp
