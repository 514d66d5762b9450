#include "api/stream_fetch.h"

#include <algorithm>
#include <utility>

#include "api/request_message.h"
#include "wire/codec.h"

namespace slp::client {
namespace {

using End = Exchange::End;
using Status = StreamConnection::Status;

/// So much room is made ahead of the bytes: what a header announces, up to 16 MB, takes memory only when it
/// comes.
constexpr std::size_t kPiece = 65536;

/// Pieces that are moved between two looks at the clock and at other sockets, so that a peer that always has
/// more outlasts neither.
constexpr int kMovesPerLook = 16;

}  // namespace

std::optional<Exchange> StreamFetch::Start(const asio::ip::tcp::endpoint& peer) {
  const Status status = connection_.StartConnect(peer);
  if (status == Status::kFailed) {
    return Exchange{End::kRefused, std::nullopt};
  }
  if (status == Status::kDone) {
    step_ = Step::kSending;
  }
  return std::nullopt;
}

AwaitedSocket StreamFetch::Awaited() {
  return {
      .socket = connection_.native_handle(),
      .operation = step_ == Step::kReceiving ? AwaitedSocket::For::kReading : AwaitedSocket::For::kWriting};
}

std::optional<Exchange> StreamFetch::Advance(bool ready) {
  Status status = ready ? Status::kDone : Status::kBlocked;
  for (int i = 0; i < kMovesPerLook && status == Status::kDone; ++i) {
    status = Move();
    if (reply_) {
      return Exchange::Replied(*std::move(reply_));
    }
  }
  if (status == Status::kFailed) {
    return Exchange{step_ == Step::kConnecting ? End::kRefused : End::kFailed, std::nullopt};
  }
  if (deadline_.Passed()) {
    return Exchange{End::kTimedOut, std::nullopt};
  }
  return std::nullopt;
}

Status StreamFetch::Move() {
  switch (step_) {
    case Step::kConnecting: {
      const Status status = connection_.FinishConnect();
      step_ = status == Status::kDone ? Step::kSending : step_;
      return status;
    }
    case Step::kSending:
      return Send();
    case Step::kReceiving:
      break;
  }
  return Receive();
}

Status StreamFetch::Send() {
  const Status status = connection_.Write(unsent_);
  if (unsent_.empty()) {
    step_ = Step::kReceiving;
  }
  return status;
}

Status StreamFetch::Receive() {
  const Status status = connection_.Read(received_, std::min(expected_ - received_.size(), kPiece));
  return status == Status::kDone && received_.size() == expected_ ? TakeReceived() : status;
}

/// The header, which tells the length of the message, or all of it.
Status StreamFetch::TakeReceived() {
  const std::optional<HeaderPeek> header = PeekHeader(received_);
  if (!header || header->length < kHeaderStart) {
    // Where the next message begins cannot be told.
    return Status::kFailed;
  }
  expected_ = header->length;
  if (received_.size() == expected_) {
    reply_ = ReadReply(received_, request_);
    received_.clear();
    expected_ = kHeaderStart;
  }
  return Status::kDone;
}

}  // namespace slp::client
