#include "net/stream_connection.h"

#include <gtest/gtest.h>

#include <asio/buffer.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
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

  static Deadline Soon(std::chrono::milliseconds wait = 2s) {
    return {[] { return std::chrono::steady_clock::now(); }, wait};
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
  ASSERT_EQ(connection_.Connect(peer_, Soon()), Status::kDone);
  tcp::socket other = Accepted();
  ASSERT_EQ(connection_.Write(std::vector<std::uint8_t>{1, 2, 3}, Soon()), Status::kDone);
  std::vector<std::uint8_t> bytes(3);
  asio::read(other, asio::buffer(bytes));
  EXPECT_EQ(bytes, (std::vector<std::uint8_t>{1, 2, 3}));
  asio::write(other, asio::buffer(bytes));
  std::vector<std::uint8_t> back(3);
  ASSERT_EQ(connection_.Read(back, Soon()), Status::kDone);
  EXPECT_EQ(back, bytes);
}

TEST_F(StreamConnectionTest, ARefusedConnectionFailsAtOnce) {
  acceptor_.close();
  const Deadline deadline = Soon(30s);
  EXPECT_EQ(connection_.Connect(peer_, deadline), Status::kFailed);
  EXPECT_GT(deadline.Remaining(), 20s);
}

TEST_F(StreamConnectionTest, SilenceTimesOut) {
  ASSERT_EQ(connection_.Connect(peer_, Soon()), Status::kDone);
  std::vector<std::uint8_t> bytes(1);
  EXPECT_EQ(connection_.Read(bytes, Soon(50ms)), Status::kTimedOut);
}

TEST_F(StreamConnectionTest, APeerThatReadsNothingTimesOut) {
  ASSERT_EQ(connection_.Connect(peer_, Soon()), Status::kDone);
  const std::vector<std::uint8_t> more_than_buffers_hold(64U << 20U);
  EXPECT_EQ(connection_.Write(more_than_buffers_hold, Soon(50ms)), Status::kTimedOut);
}

TEST_F(StreamConnectionTest, APeerThatClosesFails) {
  ASSERT_EQ(connection_.Connect(peer_, Soon()), Status::kDone);
  Accepted().close();
  std::vector<std::uint8_t> bytes(1);
  EXPECT_EQ(connection_.Read(bytes, Soon()), Status::kFailed);
}

}  // namespace
}  // namespace slp
