// One datagram socket of the daemon: takes messages in and sends the answers out by the socket of the
// interface that the sender is to see. No error of a single datagram ends it. On the thread that runs the
// event loop.
#pragma once

#include <asio/ip/udp.hpp>
#include <asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "slpd/server/message_receiver.h"

namespace slp {

class DatagramListener : public std::enable_shared_from_this<DatagramListener> {
 public:
  /// Where answers to a sender leave from; null: the datagram is none of ours.
  using ReplyBy = std::function<DatagramListener*(const asio::ip::address& sender)>;

  /// `socket` is open, bound and non-blocking. A unicast socket answers itself.
  DatagramListener(asio::ip::udp::socket socket, MessageReceiver& receiver);

  /// A socket that hears a group or broadcasts.
  DatagramListener(asio::ip::udp::socket socket, MessageReceiver& receiver, ReplyBy reply_by);

  void Start();

  /// After this the receiver is not called any more.
  void Close();

  /// Hands one datagram to the system; whether it took it. Never waits.
  bool Send(std::span<const std::uint8_t> message, const asio::ip::udp::endpoint& to);

  /// Has the receiver answer `message`, which came from `to` by whatever socket, and sends the answer from
  /// here.
  void AnswerTo(const asio::ip::udp::endpoint& to, std::span<const std::uint8_t> message, Transport transport,
                bool to_link = false);

  /// The interface of its address has another index now, by which IPv6 is to send to groups.
  asio::error_code SendGroupsBy(std::uint32_t interface_index);

  /// How many hops what is sent to groups may go from now on.
  void SetGroupHops(int hops);

  /// Lets a unicast socket hear a group through its interface, which IPv6 names by its index.
  asio::error_code Join(const asio::ip::address& group, std::uint32_t interface_index);
  asio::error_code Leave(const asio::ip::address& group, std::uint32_t interface_index);

  const asio::ip::address& local_address() const { return local_; }
  std::uint16_t port() const { return port_; }

 private:
  void Receive();
  void OnReceived(const asio::error_code& error, std::size_t size);
  void Answer(std::span<const std::uint8_t> message);
  void Pause();

  asio::ip::udp::socket socket_;
  MessageReceiver* receiver_;
  ReplyBy reply_by_;
  asio::ip::address local_;
  std::uint16_t port_ = 0;
  asio::steady_timer pause_;
  asio::ip::udp::endpoint sender_;
  std::vector<std::uint8_t> buffer_;
  int errors_in_a_row_ = 0;
};

}  // namespace slp
