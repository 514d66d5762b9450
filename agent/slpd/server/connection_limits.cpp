#include "slpd/server/connection_limits.h"

#include "slpd/others_part.h"

namespace slp {

// Programs of this host reach the daemon by the loopback interface.
std::size_t ConnectionAccounts::PartOf(const asio::ip::address& peer, std::size_t limit) {
  return peer.is_loopback() ? limit : OthersPart(limit);
}

bool ConnectionAccounts::FullFor(const asio::ip::address& peer) const {
  return connections_ >= PartOf(peer, limits_.connections);
}

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
  if (grows && (account.bytes + (now - before) > limits_.bytes_per_peer ||
                bytes_ + (now - before) > PartOf(peer, limits_.bytes))) {
    return false;
  }
  account.bytes = account.bytes - before + now;
  bytes_ = bytes_ - before + now;
  return true;
}

}  // namespace slp
