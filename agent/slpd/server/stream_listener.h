// The TCP side of the daemon: listening sockets and the connections that came through them, all under one set
// of limits. When all places are taken, the connection that has been idle for longest makes room; a peer that
// has all of its own places taken is turned away. On the thread that runs the event loop.
#pragma once

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <memory>
#include <set>

#include "slpd/server/connection_limits.h"
#include "slpd/server/message_receiver.h"
#include "slpd/server/peer_connection.h"

namespace slp {

/// The connections of all listeners.
class ConnectionTable {
 public:
  ConnectionTable(MessageReceiver& receiver, const ConnectionLimits& limits)
      : receiver_(receiver), accounts_(limits) {}
  ConnectionTable(const ConnectionTable&) = delete;
  ConnectionTable& operator=(const ConnectionTable&) = delete;
  ~ConnectionTable() { CloseAll(); }

  /// Serves the connection or, by the limits, closes it.
  void Take(asio::ip::tcp::socket socket);

  void CloseAll();

  std::size_t size() const { return connections_.size(); }
  const ConnectionAccounts& accounts() const { return accounts_; }

 private:
  bool MakeRoom();

  MessageReceiver& receiver_;
  ConnectionAccounts accounts_;
  std::set<std::shared_ptr<PeerConnection>> connections_;
};

class StreamListener : public std::enable_shared_from_this<StreamListener> {
 public:
  /// `acceptor` listens; `table` outlives the listener or its Close.
  StreamListener(asio::ip::tcp::acceptor acceptor, ConnectionTable& table);

  void Start();

  /// Takes no new connection; those that came stay.
  void Close();

 private:
  void Accept();
  void OnAccepted(const asio::error_code& error, asio::ip::tcp::socket socket);

  asio::ip::tcp::acceptor acceptor_;
  asio::steady_timer pause_;
  ConnectionTable* table_;
};

}  // namespace slp
