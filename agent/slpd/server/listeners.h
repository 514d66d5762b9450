// All sockets of the daemon, opened after a plan and changed to another one while it runs. On the thread that
// runs the event loop.
#pragma once

#include <asio/io_context.hpp>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "slpd/server/connection_limits.h"
#include "slpd/server/datagram_listener.h"
#include "slpd/server/group_members.h"
#include "slpd/server/listen_plan.h"
#include "slpd/server/message_receiver.h"
#include "slpd/server/stream_listener.h"

namespace slp {

class Listeners {
 public:
  /// `io` and `receiver` outlive the listeners.
  Listeners(asio::io_context& io, MessageReceiver& receiver, const ConnectionLimits& limits);
  Listeners(const Listeners&) = delete;
  Listeners& operator=(const Listeners&) = delete;
  ~Listeners();

  /// Brings the sockets in line with the plan; places that stay as they are keep their sockets, and
  /// connections are never cut. A place that can't be opened, or a group that can't be heard, is told in
  /// `problems` and costs the others nothing; the next call tries it again. False when nothing of the plan
  /// could be opened; then everything stays as it was.
  [[nodiscard]] bool Apply(const ListenPlan& plan, std::vector<std::string>& problems);

  /// Hears the groups of IPv6 with these numbers, as TypeGroupNumber gives them, ascending, and no other
  /// ones, at each place that hears groups, now and in later plans. What can't be heard is told in
  /// `problems`.
  void HearTypes(std::vector<std::uint16_t> numbers, std::vector<std::string>& problems);

  void Close();

  /// Sends what `message` returns for an address to the SLP group, or to the broadcast address where there is
  /// one to be used, by each place that hears the group. Those of IPv6 send it to the groups of directory
  /// agents: it is about these (RFC 3111 section 4.1).
  void SendToAll(bool broadcast, const std::function<Bytes(const asio::ip::address& address)>& message) const;

  /// One datagram to the port of every agent, from the place at `local` or, where nothing is served there,
  /// from the one that LocalAddressTowards names. One that can't be sent is lost as others are on their way.
  void SendTo(std::span<const std::uint8_t> message, const asio::ip::address& to,
              const std::string& local) const;

  /// The served address to speak to `peer` from: `local`, else one in the same network, else any of the same
  /// family that is not of the loopback network, and only then one that does not reach beyond its link; none
  /// when nothing is served that reaches it.
  std::optional<asio::ip::address> LocalAddressTowards(const asio::ip::address& peer,
                                                       const std::string& local) const;

  std::uint16_t port() const { return plan_.port; }

  /// "127.0.0.1:427", in the plan's order.
  std::vector<std::string> ServedEndpoints() const;

  /// The served addresses, in the plan's order, without zones.
  std::vector<std::string> ServedAddresses() const;

  const ConnectionTable& connections() const { return connections_; }

 private:
  struct Place {
    std::shared_ptr<DatagramListener> unicast;
    std::shared_ptr<DatagramListener> group;  ///< with IPv4, where the unicast socket does not hear it
    std::shared_ptr<StreamListener> stream;
    std::set<asio::ip::address> joined;
    std::uint32_t interface_index = 0;
    void Start() const;
  };
  using Key = std::pair<asio::ip::address, std::uint16_t>;

  std::optional<Place> Open(const ListenPlace& wanted, const ListenPlan& plan,
                            std::vector<std::string>& problems);
  void Close(Place& place);
  std::set<asio::ip::address> GroupsWanted(const ListenPlace& wanted) const;
  void LeaveUnwanted(const ListenPlace& wanted);
  void JoinMissing(const ListenPlace& wanted, const std::set<asio::ip::address>& groups,
                   std::vector<std::string>& problems);
  asio::error_code Join(Place& place, const asio::ip::address& group);
  void Leave(Place& place, const asio::ip::address& group);
  void OpenBroadcast(const ListenPlan& plan, std::vector<std::string>& problems);
  DatagramListener* ListenerFacing(const asio::ip::address& sender) const;

  asio::io_context& io_;
  MessageReceiver& receiver_;
  ConnectionTable connections_;
  // Types may be many; what they take up is not taken from the other groups.
  GroupMembers agent_groups_;
  GroupMembers type_groups_;
  std::vector<std::uint16_t> types_;
  std::map<Key, Place> places_;
  std::shared_ptr<DatagramListener> broadcast_;
  ListenPlan plan_;
};

}  // namespace slp
