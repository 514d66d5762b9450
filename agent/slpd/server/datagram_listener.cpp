#include "slpd/server/datagram_listener.h"

#include <asio/buffer.hpp>
#include <asio/ip/multicast.hpp>
#include <chrono>

#include "net/listen_sockets.h"
#include "wire/codec.h"

namespace slp {
namespace {

// The longest datagram that IPv4 can carry.
constexpr std::size_t kLongestDatagram = 65535;

// A socket that fails again and again (its interface is down, say) is left alone for a while instead of being
// asked without end.
constexpr int kErrorsBeforePause = 8;
constexpr std::chrono::seconds kPauseAfterErrors{1};

}  // namespace

DatagramListener::DatagramListener(asio::ip::udp::socket socket, MessageReceiver& receiver)
    : DatagramListener(std::move(socket), receiver, nullptr) {}

DatagramListener::DatagramListener(asio::ip::udp::socket socket, MessageReceiver& receiver, ReplyBy reply_by)
    : socket_(std::move(socket)),
      receiver_(&receiver),
      reply_by_(std::move(reply_by)),
      pause_(socket_.get_executor()),
      buffer_(kLongestDatagram) {
  asio::error_code ignored;
  const asio::ip::udp::endpoint local = socket_.local_endpoint(ignored);
  local_ = local.address();
  port_ = local.port();
}

void DatagramListener::Start() {
  Receive();
}

void DatagramListener::Close() {
  receiver_ = nullptr;
  asio::error_code ignored;
  socket_.close(ignored);
  pause_.cancel();
}

bool DatagramListener::Send(std::span<const std::uint8_t> message, const asio::ip::udp::endpoint& to) {
  asio::error_code error;
  socket_.send_to(asio::buffer(message.data(), message.size()), to, 0, error);
  return !error;
}

void DatagramListener::AnswerTo(const asio::ip::udp::endpoint& to, std::span<const std::uint8_t> message,
                                Transport transport, bool to_link) {
  if (receiver_ == nullptr) {
    return;
  }
  const Sender sender{to.address(), local_, transport, to_link};
  if (to.port() == 0) {
    return receiver_->OnDropped("no port to answer to", message.size(), sender);
  }
  const auto reply = receiver_->OnMessage(message, sender);
  if (reply && !Send(*reply, to) && receiver_ != nullptr) {
    receiver_->OnDropped("the answer could not be sent", reply->size(), sender);
  }
}

asio::error_code DatagramListener::SendGroupsBy(std::uint32_t interface_index) {
  return slp::SendGroupsBy(socket_, local_, interface_index);
}

// A number that the system took when the socket was opened is not refused later.
void DatagramListener::SetGroupHops(int hops) {
  asio::error_code ignored;
  socket_.set_option(asio::ip::multicast::hops(hops), ignored);
}

asio::error_code DatagramListener::Join(const asio::ip::address& group, std::uint32_t interface_index) {
  return JoinGroup(socket_, group, local_, interface_index);
}

asio::error_code DatagramListener::Leave(const asio::ip::address& group, std::uint32_t interface_index) {
  return LeaveGroup(socket_, group, local_, interface_index);
}

void DatagramListener::Receive() {
  socket_.async_receive_from(asio::buffer(buffer_), sender_,
                             [self = shared_from_this()](const asio::error_code& error, std::size_t size) {
                               self->OnReceived(error, size);
                             });
}

void DatagramListener::OnReceived(const asio::error_code& error, std::size_t size) {
  if (receiver_ == nullptr) {
    return;
  }
  if (error) {
    ++errors_in_a_row_;
    return errors_in_a_row_ < kErrorsBeforePause ? Receive() : Pause();
  }
  errors_in_a_row_ = 0;
  Answer(std::span<const std::uint8_t>(buffer_).first(size));
  // The answer's way may have closed this socket.
  if (receiver_ != nullptr) {
    Receive();
  }
}

void DatagramListener::Answer(std::span<const std::uint8_t> message) {
  DatagramListener* const reply_by = reply_by_ ? reply_by_(sender_.address()) : this;
  if (reply_by == nullptr) {
    return receiver_->OnDropped("from none of the served networks", message.size(),
                                {sender_.address(), local_, Transport::kUdpMulticast});
  }
  Transport transport = reply_by_ ? Transport::kUdpMulticast : Transport::kUdpUnicast;
  if (!reply_by_ && UnicastSocketHearsGroup(local_)) {
    const auto header = PeekHeader(message);
    transport = header && header->request_multicast ? Transport::kUdpMulticast : Transport::kUdpUnicast;
  }
  // The answer's way may close it.
  reply_by->shared_from_this()->AnswerTo(sender_, message, transport);
}

void DatagramListener::Pause() {
  errors_in_a_row_ = 0;
  pause_.expires_after(kPauseAfterErrors);
  pause_.async_wait([self = shared_from_this()](const asio::error_code& error) {
    if (!error && self->receiver_ != nullptr) {
      self->Receive();
    }
  });
}

}  // namespace slp
