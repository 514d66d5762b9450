// The daemon's sockets for groups of IPv6: as few as the system lets hold all memberships, none bound to an
// interface. On the thread that runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/address_v6.hpp>
#include <asio/ip/udp.hpp>
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "slpd/server/datagram_listener.h"

namespace slp {

/// A group that is heard through an interface.
struct GroupMembership {
  asio::ip::address_v6 group;  ///< without a zone
  std::uint32_t interface_index = 0;

  friend bool operator<(const GroupMembership& one, const GroupMembership& other) {
    return std::tie(one.group, one.interface_index) < std::tie(other.group, other.interface_index);
  }
};

class GroupMembers {
 public:
  /// `io` outlives it.
  explicit GroupMembers(asio::io_context& io) : io_(io) {}
  GroupMembers(const GroupMembers&) = delete;
  GroupMembers& operator=(const GroupMembers&) = delete;
  ~GroupMembers() { Close(); }

  /// What comes to the group's `port` through the interface is answered by `reply_by` from now on. The system
  /// holds so many memberships a socket; where one is full, another one is opened, up to a limit.
  asio::error_code Join(const GroupMembership& membership, std::uint16_t port,
                        const std::shared_ptr<DatagramListener>& reply_by);

  /// The opposite of Join. One that is not there, or no longer with its interface, needs no leaving.
  void Leave(const GroupMembership& membership, std::uint16_t port);

  void Close();

 private:
  class Socket;

  asio::io_context& io_;
  std::vector<std::shared_ptr<Socket>> sockets_;
};

}  // namespace slp
