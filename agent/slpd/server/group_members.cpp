#include "slpd/server/group_members.h"

#include <algorithm>
#include <asio/error.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <utility>

#include "net/group_socket.h"
#include "net/listen_sockets.h"

namespace slp {
namespace {

constexpr std::size_t kLongestMessage = 65535;

// So many hold each group of types on some interfaces, where the system lets a socket hold a few hundred.
constexpr std::size_t kMostSockets = 16;

// Datagrams that are taken before others have their turn.
constexpr int kDatagramsATurn = 64;

// A socket that fails is left alone for a while.
constexpr std::chrono::seconds kRestAfterError{1};

bool IsFull(const asio::error_code& error) {
  return error == asio::error::no_memory || error == asio::error::no_buffer_space;
}

bool IsEmpty(const asio::error_code& error) {
  return error == asio::error::would_block || error == asio::error::try_again ||
         error == asio::error::interrupted;
}

}  // namespace

class GroupMembers::Socket : public std::enable_shared_from_this<GroupMembers::Socket> {
 public:
  Socket(asio::io_context& io, std::uint16_t port)
      : port_(port), socket_(io), rest_(io), buffer_(kLongestMessage) {}

  asio::error_code Open() { return OpenSocketForGroups(socket_, port_); }

  void Start() {
    socket_.async_wait(asio::ip::udp::socket::wait_read,
                       [self = shared_from_this()](const asio::error_code& error) {
                         if (!self->closed_) {
                           error ? self->Rest() : self->TakeAll();
                         }
                       });
  }

  void Close() {
    closed_ = true;
    members_.clear();
    asio::error_code ignored;
    socket_.close(ignored);
    rest_.cancel();
  }

  asio::error_code Join(const GroupMembership& membership,
                        const std::shared_ptr<DatagramListener>& reply_by) {
    const auto error = JoinGroup(socket_, membership.group, {}, membership.interface_index);
    if (!error) {
      members_[membership] = reply_by;
    }
    return error;
  }

  void Leave(const GroupMembership& membership) {
    if (members_.erase(membership) > 0) {
      static_cast<void>(LeaveGroup(socket_, membership.group, {}, membership.interface_index));
    }
  }

  std::uint16_t port() const { return port_; }
  bool has_members() const { return !members_.empty(); }

 private:
  void TakeAll() {
    for (int i = 0; i < kDatagramsATurn && !closed_; ++i) {
      GroupDatagram datagram;
      if (const auto error = ReceiveFromGroup(socket_, buffer_, datagram)) {
        return IsEmpty(error) ? Start() : Rest();
      }
      Take(datagram);
    }
    if (!closed_) {
      Start();
    }
  }

  // What was sent to another group, or to one of this host's addresses, is none of the daemon's. A system
  // that does not tell delivers what was joined alone, and that on one interface.
  void Take(const GroupDatagram& datagram) {
    const auto member = datagram.group.is_unspecified()
                            ? members_.begin()
                            : members_.find({datagram.group, datagram.interface_index});
    if (member != members_.end()) {
      const std::shared_ptr<DatagramListener> reply_by = member->second;
      reply_by->AnswerTo(datagram.sender, std::span(buffer_).first(datagram.size), Transport::kUdpMulticast,
                         datagram.group.is_multicast_link_local());
    }
  }

  void Rest() {
    rest_.expires_after(kRestAfterError);
    rest_.async_wait([self = shared_from_this()](const asio::error_code& error) {
      if (!error && !self->closed_) {
        self->Start();
      }
    });
  }

  const std::uint16_t port_;
  asio::ip::udp::socket socket_;
  asio::steady_timer rest_;
  std::vector<std::uint8_t> buffer_;
  std::map<GroupMembership, std::shared_ptr<DatagramListener>> members_;
  bool closed_ = false;
};

asio::error_code GroupMembers::Join(const GroupMembership& membership, std::uint16_t port,
                                    const std::shared_ptr<DatagramListener>& reply_by) {
  asio::error_code error = asio::error::no_memory;
  for (const std::shared_ptr<Socket>& socket : sockets_) {
    if (socket->port() == port) {
      error = socket->Join(membership, reply_by);
      if (!IsFull(error)) {
        return error;
      }
    }
  }
  if (sockets_.size() == kMostSockets) {
    return error;
  }
  const auto added = std::make_shared<Socket>(io_, port);
  error = added->Open();
  if (!error) {
    error = added->Join(membership, reply_by);
  }
  if (!error) {
    added->Start();
    sockets_.push_back(added);
  }
  return error;
}

void GroupMembers::Leave(const GroupMembership& membership, std::uint16_t port) {
  for (const std::shared_ptr<Socket>& socket : sockets_) {
    if (socket->port() == port) {
      socket->Leave(membership);
      if (!socket->has_members()) {
        socket->Close();
      }
    }
  }
  std::erase_if(sockets_, [](const auto& socket) { return !socket->has_members(); });
}

void GroupMembers::Close() {
  for (const std::shared_ptr<Socket>& socket : sockets_) {
    socket->Close();
  }
  sockets_.clear();
}

}  // namespace slp
