#include "net/stream_connection.h"

#include <asio/buffer.hpp>

#include "net/native_socket.h"

namespace slp {
namespace {

/// Repeats `transfer` (a span to the number of bytes moved) until all of `bytes` has been moved.
template <typename Byte, typename Transfer>
StreamConnection::Status MoveAll(NativeSocket socket, AwaitedSocket::For operation, std::span<Byte> bytes,
                                 const Deadline& deadline, Transfer transfer) {
  while (!bytes.empty()) {
    asio::error_code error;
    const std::size_t moved = transfer(bytes, error);
    if (error == asio::error::would_block || error == asio::error::try_again) {
      if (deadline.Passed()) {
        return StreamConnection::Status::kTimedOut;
      }
      WaitUntilReady(socket, operation, deadline.Remaining());
      continue;
    }
    if (error) {
      return StreamConnection::Status::kFailed;
    }
    bytes = bytes.subspan(moved);
    // A peer that trickles its bytes never makes the call wait and must not outlive the deadline either.
    if (!bytes.empty() && deadline.Passed()) {
      return StreamConnection::Status::kTimedOut;
    }
  }
  return StreamConnection::Status::kDone;
}

}  // namespace

StreamConnection::Status StreamConnection::Connect(const asio::ip::tcp::endpoint& peer,
                                                   const Deadline& deadline) {
  asio::error_code error;
  socket_.open(peer.protocol(), error);
  if (!error) {
    socket_.non_blocking(true, error);
  }
  if (error) {
    return Status::kFailed;
  }
  error = StartConnect(socket_.native_handle(), peer);
  if (error == asio::error::in_progress) {
    while (!WaitUntilReady(socket_.native_handle(), AwaitedSocket::For::kWriting, deadline.Remaining())) {
      if (deadline.Passed()) {
        return Status::kTimedOut;
      }
    }
    error = ConnectResult(socket_.native_handle());
  }
  return error ? Status::kFailed : Status::kDone;
}

StreamConnection::Status StreamConnection::Write(std::span<const std::uint8_t> bytes,
                                                 const Deadline& deadline) {
  return MoveAll(socket_.native_handle(), AwaitedSocket::For::kWriting, bytes, deadline,
                 [this](std::span<const std::uint8_t> rest, asio::error_code& error) {
                   return socket_.write_some(asio::buffer(rest.data(), rest.size()), error);
                 });
}

StreamConnection::Status StreamConnection::Read(std::span<std::uint8_t> bytes, const Deadline& deadline) {
  return MoveAll(socket_.native_handle(), AwaitedSocket::For::kReading, bytes, deadline,
                 [this](std::span<std::uint8_t> rest, asio::error_code& error) {
                   return socket_.read_some(asio::buffer(rest.data(), rest.size()), error);
                 });
}

}  // namespace slp
