#include "slpd/server/connection_limits.h"

namespace slp {

bool ConnectionAccounts::PeerFull(const asio::ip::address& peer) const {
  const auto found = peers_.find(peer);
  return found != peers_.end() && found->second.connections >= limits_.connections_per_peer;
}

void ConnectionAccounts::Add(const asio::ip::address& peer) {
  ++peers_[peer].connections;
  ++connections_;
}

void ConnectionAccounts::Remove(const asio::ip::address& peer) {
  const auto found = peers_.find(peer);
  if (found == peers_.end()) {
    return;
  }
  --connections_;
  if (--found->second.connections == 0) {
    bytes_ -= found->second.bytes;
    peers_.erase(found);
  }
}

bool ConnectionAccounts::Charge(const asio::ip::address& peer, std::size_t before, std::size_t now) {
  Account& account = peers_[peer];
  const bool grows = now > before;
  if (grows &&
      (account.bytes + (now - before) > limits_.bytes_per_peer || bytes_ + (now - before) > limits_.bytes)) {
    return false;
  }
  account.bytes = account.bytes - before + now;
  bytes_ = bytes_ - before + now;
  return true;
}

}  // namespace slp
