#include "slpd/server/peer_connection.h"

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

namespace slp {

PeerConnection::PeerConnection(asio::ip::tcp::socket socket, const Sender& sender, MessageReceiver& receiver,
                               ConnectionAccounts& accounts, Closed closed)
    : socket_(std::move(socket)),
      deadline_(socket_.get_executor()),
      sender_(sender),
      receiver_(&receiver),
      accounts_(&accounts),
      closed_(std::move(closed)),
      framer_(accounts.limits().message_bytes) {
  accounts_->Add(sender_.address);
}

void PeerConnection::Start() {
  Next();
}

void PeerConnection::Close() {
  if (receiver_ == nullptr) {
    return;
  }
  static_cast<void>(accounts_->Charge(sender_.address, charged_, 0));
  accounts_->Remove(sender_.address);
  receiver_ = nullptr;
  accounts_ = nullptr;
  closed_ = nullptr;
  idle_since_.reset();
  deadline_.cancel();
  asio::error_code ignored;
  socket_.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
  socket_.close(ignored);
}

// One message after the other:
// 1. A whole message in the buffer is answered; the next one has its turn when the answer is out.
// 2. What can't be cut into messages is answered once, then the connection ends.
// 3. Otherwise more is read. The time limit of a message runs from its first byte, so that bytes that drip in
// one by
//    one don't prolong it.
void PeerConnection::Next() {
  std::span<const std::uint8_t> message;
  switch (framer_.Next(message)) {
    case MessageFramer::State::kMessage:
      in_message_ = false;
      return Answer(message);
    case MessageFramer::State::kLast:
      last_ = true;
      return Answer(message);
    case MessageFramer::State::kTooLong:
      return End("a message over the size limit");
    case MessageFramer::State::kIncomplete:
      break;
  }
  if (framer_.pending() == 0) {
    framer_.Release();
    in_message_ = false;
    idle_since_ = std::chrono::steady_clock::now();
    WaitAtMost(accounts_->limits().idle, {});
  } else if (!in_message_) {
    in_message_ = true;
    WaitAtMost(accounts_->limits().message, "a message that took too long to come");
  }
  if (!Charge()) {
    return End("too much held for this peer");
  }
  Read();
}

void PeerConnection::Read() {
  socket_.async_read_some(asio::buffer(chunk_),
                          [self = shared_from_this()](const asio::error_code& error, std::size_t size) {
                            self->OnRead(error, size);
                          });
}

void PeerConnection::OnRead(const asio::error_code& error, std::size_t size) {
  if (receiver_ == nullptr) {
    return;
  }
  if (error) {
    return End(framer_.pending() > 0 ? "the connection ended inside a message" : "");
  }
  idle_since_.reset();
  framer_.Append(std::span<const std::uint8_t>(chunk_).first(size));
  if (!Charge()) {
    return End("too much held for this peer");
  }
  Next();
}

// The framer holds the message until the next one is asked for, which comes after the answer.
void PeerConnection::Answer(std::span<const std::uint8_t> message) {
  if (const auto wait = receiver_->WaitBefore(message, sender_); wait > wait.zero()) {
    deadline_.expires_after(wait);
    return deadline_.async_wait([self = shared_from_this(), message](const asio::error_code& error) {
      if (!error && self->receiver_ != nullptr) {
        self->Answer(message);
      }
    });
  }
  auto reply = receiver_->OnMessage(message, sender_);
  if (receiver_ == nullptr) {
    return;
  }
  if (!reply) {
    // By way of the loop, so that a peer that sends a flood of such messages leaves the others their turn.
    return asio::post(socket_.get_executor(), [self = shared_from_this()] { self->OnWritten({}); });
  }
  reply_ = std::move(*reply);
  if (!Charge()) {
    return End("too much held for this peer");
  }
  WaitAtMost(accounts_->limits().reply, "an answer that was not fetched in time");
  asio::async_write(
      socket_, asio::buffer(reply_),
      [self = shared_from_this()](const asio::error_code& error, std::size_t) { self->OnWritten(error); });
}

void PeerConnection::OnWritten(const asio::error_code& error) {
  if (receiver_ == nullptr) {
    return;
  }
  if (error || last_) {
    return End(error ? "the peer went before its answer was out" : "");
  }
  reply_ = {};
  in_message_ = false;
  Next();
}

bool PeerConnection::Charge() {
  const std::size_t held = framer_.held() + reply_.capacity();
  if (!accounts_->Charge(sender_.address, charged_, held)) {
    return false;
  }
  charged_ = held;
  return true;
}

void PeerConnection::WaitAtMost(std::chrono::milliseconds time, std::string_view reason) {
  deadline_.expires_after(time);
  deadline_.async_wait([self = shared_from_this(), reason](const asio::error_code& error) {
    // A wait that was replaced just as it ran out may still arrive here.
    if (!error && self->receiver_ != nullptr &&
        self->deadline_.expiry() <= std::chrono::steady_clock::now()) {
      self->End(reason);
    }
  });
}

void PeerConnection::End(std::string_view reason) {
  if (!reason.empty()) {
    receiver_->OnDropped(reason, framer_.pending(), sender_);
  }
  const Closed closed = std::move(closed_);
  Close();
  if (closed) {
    closed(*this);
  }
}

}  // namespace slp
