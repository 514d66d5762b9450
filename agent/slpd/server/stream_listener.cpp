#include "slpd/server/stream_listener.h"

#include <algorithm>

#include "net/native_socket.h"

namespace slp {
namespace {

// Out of descriptors, say: nothing gets better by asking again at once.
constexpr std::chrono::milliseconds kPauseAfterError{200};

}  // namespace

void ConnectionTable::Take(asio::ip::tcp::socket socket) {
  asio::error_code error;
  const auto remote = socket.remote_endpoint(error);
  if (error) {
    return;
  }
  const Sender sender{remote.address(), socket.local_endpoint(error).address(), Transport::kTcp};
  if (accounts_.PeerFull(sender.address)) {
    return receiver_.OnDropped("too many connections of this peer", 0, sender);
  }
  if (accounts_.FullFor(sender.address) && !MakeRoom()) {
    return receiver_.OnDropped("too many connections", 0, sender);
  }
  socket.set_option(asio::ip::tcp::no_delay(true), error);
  const auto connection = std::make_shared<PeerConnection>(
      std::move(socket), sender, receiver_, accounts_,
      [this](PeerConnection& ended) { connections_.erase(ended.shared_from_this()); });
  connections_.insert(connection);
  connection->Start();
}

bool ConnectionTable::MakeRoom() {
  const auto longest_idle =
      std::min_element(connections_.begin(), connections_.end(), [](const auto& one, const auto& other) {
        return one->idle_since() && (!other->idle_since() || *one->idle_since() < *other->idle_since());
      });
  if (longest_idle == connections_.end() || !(*longest_idle)->idle_since()) {
    return false;
  }
  (*longest_idle)->Close();
  connections_.erase(longest_idle);
  return true;
}

void ConnectionTable::CloseAll() {
  for (const auto& connection : connections_) {
    connection->Close();
  }
  connections_.clear();
}

StreamListener::StreamListener(asio::ip::tcp::acceptor acceptor, ConnectionTable& table)
    : acceptor_(std::move(acceptor)), pause_(acceptor_.get_executor()), table_(&table) {}

void StreamListener::Start() {
  Accept();
}

void StreamListener::Close() {
  table_ = nullptr;
  asio::error_code ignored;
  acceptor_.close(ignored);
  pause_.cancel();
}

void StreamListener::Accept() {
  acceptor_.async_accept(
      [self = shared_from_this()](const asio::error_code& error, asio::ip::tcp::socket socket) {
        self->OnAccepted(error, std::move(socket));
      });
}

void StreamListener::OnAccepted(const asio::error_code& error, asio::ip::tcp::socket socket) {
  if (table_ == nullptr) {
    return;
  }
  if (!error) {
    KeepFromStartedPrograms(socket.native_handle());
    table_->Take(std::move(socket));
    return Accept();
  }
  if (error == asio::error::connection_aborted) {
    return Accept();
  }
  pause_.expires_after(kPauseAfterError);
  pause_.async_wait([self = shared_from_this()](const asio::error_code& cancelled) {
    if (!cancelled && self->table_ != nullptr) {
      self->Accept();
    }
  });
}

}  // namespace slp
