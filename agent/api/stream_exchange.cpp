#include "api/stream_exchange.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <cstddef>

#include "api/request_message.h"
#include "net/stream_connection.h"
#include "wire/codec.h"

namespace slp::client {
namespace {

using Status = StreamConnection::Status;

/// As many bytes as PeekHeader needs.
constexpr std::size_t kHeaderStart = 12;

/// So much room is made ahead of the bytes: what a header announces, up to 16 MB, takes memory only when it
/// comes.
constexpr std::size_t kPiece = 65536;

Exchange::End EndOf(Status status) {
  return status == Status::kTimedOut ? Exchange::End::kTimedOut : Exchange::End::kFailed;
}

Status ReadUpTo(StreamConnection& connection, Bytes& bytes, std::size_t length, const Deadline& deadline) {
  while (bytes.size() < length) {
    const std::size_t before = bytes.size();
    bytes.resize(std::min(length, before + kPiece));
    const Status status = connection.Read(std::span(bytes).subspan(before), deadline);
    if (status != Status::kDone) {
      return status;
    }
  }
  return Status::kDone;
}

/// One message by the length in its header.
Status ReadMessage(StreamConnection& connection, Bytes& bytes, const Deadline& deadline) {
  bytes.clear();
  const Status status = ReadUpTo(connection, bytes, kHeaderStart, deadline);
  if (status != Status::kDone) {
    return status;
  }
  const std::optional<HeaderPeek> header = PeekHeader(bytes);
  if (!header || header->length < kHeaderStart) {
    // Where the next message begins cannot be told.
    return Status::kFailed;
  }
  return ReadUpTo(connection, bytes, header->length, deadline);
}

}  // namespace

Exchange ExchangeByStream(const StreamPeer& peer, const Message& request,
                          std::span<const std::uint8_t> encoded, const Deadline& deadline) {
  asio::io_context io;
  StreamConnection connection(io);
  Status status = connection.Connect({peer.address, peer.port}, deadline);
  if (status != Status::kDone) {
    return {status == Status::kTimedOut ? Exchange::End::kTimedOut : Exchange::End::kRefused, std::nullopt};
  }
  status = connection.Write(encoded, deadline);
  Bytes bytes;
  while (status == Status::kDone) {
    status = ReadMessage(connection, bytes, deadline);
    if (status != Status::kDone) {
      break;
    }
    if (std::optional<Message> reply = ReadReply(bytes, request)) {
      return Exchange::Replied(std::move(*reply));
    }
    // A peer that always has another message must not outlive the deadline.
    if (deadline.Passed()) {
      status = Status::kTimedOut;
    }
  }
  return {EndOf(status), std::nullopt};
}

}  // namespace slp::client
