#include "slpd/server/listeners.h"

#include <algorithm>

#include "net/addresses.h"
#include "net/interfaces.h"
#include "net/listen_sockets.h"

namespace slp {
namespace {

using asio::ip::tcp;
using asio::ip::udp;

std::string EndpointText(const asio::ip::address& address, std::uint16_t port) {
  return (address.is_v6() ? "[" + address.to_string() + "]" : address.to_string()) + ":" +
         std::to_string(port);
}

// What the administrator can do about it.
std::string Advice(const asio::error_code& error, std::uint16_t port) {
  constexpr std::uint16_t kFirstUnprivilegedPort = 1024;
  if (error == asio::error::address_in_use) {
    return "; another SLP agent may be running: stop it, or choose another port with net.slp.port";
  }
  if (error == asio::error::access_denied) {
    return port < kFirstUnprivilegedPort ? "; ports below 1024 need the administrator's rights: run slpd "
                                           "with them, or choose a higher port "
                                           "with net.slp.port"
                                         : "; another program may hold the port for itself: stop it, or "
                                           "choose another port with net.slp.port";
  }
  return {};
}

std::string CannotServe(std::string_view transport, const asio::ip::address& address, std::uint16_t port,
                        const std::string& name, const asio::error_code& error) {
  return "cannot serve " + std::string(transport) + " " + EndpointText(address, port) + " (" + name +
         "): " + error.message() + Advice(error, port);
}

bool IsOfLink(const asio::ip::address& address) {
  return address.is_v6() && address.to_v6().is_link_local();
}

// Where an agent at `local` says what is about directory agents.
std::vector<asio::ip::address> GroupsToTell(const asio::ip::address& local) {
  if (local.is_v4()) {
    return {kMulticastGroup};
  }
  return {Ipv6Group(GroupReach::kLink, kDirectoryAgentsGroup),
          Ipv6Group(GroupReach::kSite, kDirectoryAgentsGroup)};
}

}  // namespace

void Listeners::Place::Start() const {
  unicast->Start();
  stream->Start();
}

void Listeners::Place::Close() const {
  unicast->Close();
  stream->Close();
  for (const auto& group : groups) {
    group->Close();
  }
}

Listeners::Listeners(asio::io_context& io, MessageReceiver& receiver, const ConnectionLimits& limits)
    : io_(io), receiver_(receiver), connections_(receiver, limits) {}

Listeners::~Listeners() {
  Close();
}

// Steps:
// 1. Open what the plan wants and is not open yet; what fails is told.
// 2. With nothing open at the end, leave all as it was.
// 3. Close what the plan no longer wants, start what is new.
// 4. Join or leave the group where the plan has changed.
bool Listeners::Apply(const ListenPlan& plan, std::vector<std::string>& problems) {
  std::map<Key, Place> next;
  std::vector<Key> opened;
  for (const ListenPlace& wanted : plan.places) {
    const Key key(wanted.address, plan.port);
    const auto present = places_.find(key);
    if (present != places_.end()) {
      next.insert(*present);
    } else if (next.count(key) == 0) {
      if (auto place = Open(wanted, plan, problems)) {
        next.emplace(key, std::move(*place));
        opened.push_back(key);
      }
    }
  }
  if (next.empty()) {
    return false;
  }
  for (const auto& [key, place] : places_) {
    if (next.count(key) == 0) {
      place.Close();
    }
  }
  const bool broadcast_changed = plan.broadcast != plan_.broadcast || plan.port != plan_.port;
  places_ = std::move(next);
  plan_ = plan;
  for (const Key& key : opened) {
    places_.at(key).Start();
  }
  for (const ListenPlace& wanted : plan.places) {
    const auto place = places_.find({wanted.address, plan.port});
    if (place == places_.end() || wanted.group == place->second.in_group) {
      continue;
    }
    if (wanted.group) {
      OpenGroup(place->second, wanted, plan, problems);
    } else {
      LeaveGroup(wanted.address, place->second);
    }
  }
  if (broadcast_changed) {
    OpenBroadcast(plan, problems);
  }
  return true;
}

void Listeners::Close() {
  for (const auto& [key, place] : places_) {
    place.Close();
  }
  places_.clear();
  if (broadcast_) {
    broadcast_->Close();
    broadcast_.reset();
  }
  connections_.CloseAll();
  plan_ = {};
}

void Listeners::SendToAll(bool broadcast,
                          const std::function<Bytes(const asio::ip::address& address)>& message) const {
  for (const auto& [key, place] : places_) {
    const bool by_broadcast =
        broadcast && !plan_.broadcast.is_unspecified() && key.first.is_v4() && !key.first.is_loopback();
    if (!place.in_group) {
      continue;
    }
    const Bytes bytes = message(key.first);
    for (const asio::ip::address& to :
         by_broadcast ? std::vector{plan_.broadcast} : GroupsToTell(key.first)) {
      // One that an interface does not take is sent again later, as one that is lost.
      static_cast<void>(place.unicast->Send(bytes, {to, plan_.port}));
    }
  }
}

void Listeners::SendTo(std::span<const std::uint8_t> message, const asio::ip::address& to,
                       const std::string& local) const {
  if (const auto from = LocalAddressTowards(to, local)) {
    static_cast<void>(places_.at({*from, plan_.port}).unicast->Send(message, {to, plan_.port}));
  }
}

std::optional<asio::ip::address> Listeners::LocalAddressTowards(const asio::ip::address& peer,
                                                                const std::string& local) const {
  for (const auto& [key, place] : places_) {
    if (key.first.to_string() == local) {
      return key.first;
    }
  }
  if (const DatagramListener* facing = ListenerFacing(peer)) {
    return facing->local_address();
  }
  for (const bool of_link : {false, true}) {
    for (const auto& [key, place] : places_) {
      if (key.first.is_v4() == peer.is_v4() && key.first.is_loopback() == peer.is_loopback() &&
          IsOfLink(key.first) == of_link) {
        return key.first;
      }
    }
  }
  return std::nullopt;
}

std::vector<std::string> Listeners::ServedEndpoints() const {
  std::vector<std::string> endpoints;
  for (const ListenPlace& place : plan_.places) {
    if (places_.count({place.address, plan_.port}) > 0) {
      endpoints.push_back(EndpointText(place.address, plan_.port));
    }
  }
  return endpoints;
}

std::vector<std::string> Listeners::ServedAddresses() const {
  std::vector<std::string> addresses;
  for (const ListenPlace& place : plan_.places) {
    if (places_.count({place.address, plan_.port}) > 0) {
      addresses.push_back(WithoutZone(place.address));
    }
  }
  return addresses;
}

std::optional<Listeners::Place> Listeners::Open(const ListenPlace& wanted, const ListenPlan& plan,
                                                std::vector<std::string>& problems) {
  udp::socket unicast(io_);
  if (const auto error = OpenUnicastSocket(unicast, {wanted.address, plan.port}, plan.multicast_hops,
                                           wanted.interface_index)) {
    problems.push_back(CannotServe("UDP", wanted.address, plan.port, wanted.interface_name, error));
    return std::nullopt;
  }
  tcp::acceptor acceptor(io_);
  if (const auto error = OpenAcceptor(acceptor, {wanted.address, plan.port})) {
    problems.push_back(CannotServe("TCP", wanted.address, plan.port, wanted.interface_name, error));
    return std::nullopt;
  }
  Place place;
  place.unicast = std::make_shared<DatagramListener>(std::move(unicast), receiver_);
  place.stream = std::make_shared<StreamListener>(std::move(acceptor), connections_);
  place.interface_index = wanted.interface_index;
  return place;
}

// A place that hears one of its groups is in them; what the others lack is told once.
void Listeners::OpenGroup(Place& place, const ListenPlace& wanted, const ListenPlan& plan,
                          std::vector<std::string>& problems) {
  asio::error_code first_error;
  for (const asio::ip::address& group : GroupsFor(wanted.address)) {
    udp::socket socket(io_);
    const bool by_unicast_socket = UnicastSocketHearsGroup(wanted.address);
    const auto error =
        by_unicast_socket ? place.unicast->Join(group, wanted.interface_index)
                          : OpenGroupSocket(socket, group, plan.port, wanted.address, wanted.interface_index);
    if (error) {
      first_error = first_error ? first_error : error;
      continue;
    }
    place.in_group = true;
    if (!by_unicast_socket) {
      place.groups.push_back(std::make_shared<DatagramListener>(
          std::move(socket), receiver_,
          [reply_by = place.unicast](const asio::ip::address&) { return reply_by.get(); }));
      place.groups.back()->Start();
    }
  }
  if (first_error) {
    problems.push_back("multicast requests are not heard on " + wanted.address.to_string() + " (" +
                       wanted.interface_name + "): " + first_error.message());
  }
}

void Listeners::LeaveGroup(const asio::ip::address& address, Place& place) {
  for (const auto& group : place.groups) {
    group->Close();
  }
  if (place.groups.empty()) {
    for (const asio::ip::address& group : GroupsFor(address)) {
      // A membership that is already gone, with its interface, needs no leaving.
      static_cast<void>(place.unicast->Leave(group, place.interface_index));
    }
  }
  place.groups.clear();
  place.in_group = false;
}

void Listeners::OpenBroadcast(const ListenPlan& plan, std::vector<std::string>& problems) {
  if (broadcast_) {
    broadcast_->Close();
    broadcast_.reset();
  }
  if (kUnicastSocketHearsBroadcast || plan.broadcast.is_unspecified()) {
    return;
  }
  udp::socket socket(io_);
  if (const auto error = OpenBroadcastSocket(socket, {plan.broadcast, plan.port})) {
    problems.push_back("broadcast requests to " + plan.broadcast.to_string() +
                       " are not heard: " + error.message());
    return;
  }
  broadcast_ = std::make_shared<DatagramListener>(
      std::move(socket), receiver_,
      [this](const asio::ip::address& sender) { return ListenerFacing(sender); });
  broadcast_->Start();
}

DatagramListener* Listeners::ListenerFacing(const asio::ip::address& sender) const {
  std::vector<Interface> all = EnumerateInterfaces(sender.is_v6());
  std::erase_if(all, [this](const Interface& entry) {
    return places_.count({entry.address, plan_.port}) == 0;
  });
  for (const Interface& entry : all) {
    if (IsOnOwnNetwork({entry}, sender)) {
      return places_.at({entry.address, plan_.port}).unicast.get();
    }
  }
  return nullptr;
}

}  // namespace slp
