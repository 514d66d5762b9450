#include "slpd/server/listeners.h"

#include <algorithm>
#include <iterator>

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

std::set<asio::ip::address> GroupsOfTypes(const std::vector<std::uint16_t>& numbers) {
  std::set<asio::ip::address> groups;
  for (const std::uint16_t number : numbers) {
    groups.insert(Ipv6Group(GroupReach::kLink, kTypeGroupsBegin + number));
    groups.insert(Ipv6Group(GroupReach::kSite, kTypeGroupsBegin + number));
  }
  return groups;
}

// Whether requests for some types of services are sent to it, and nothing else.
bool IsOfTypes(const asio::ip::address& group) {
  const std::vector<asio::ip::address> others = GroupsFor(group);
  return std::find(others.begin(), others.end(), group) == others.end();
}

}  // namespace

void Listeners::Place::Start() const {
  unicast->Start();
  stream->Start();
}

Listeners::Listeners(asio::io_context& io, MessageReceiver& receiver, const ConnectionLimits& limits)
    : io_(io), receiver_(receiver), connections_(receiver, limits), agent_groups_(io), type_groups_(io) {}

Listeners::~Listeners() {
  Close();
}

// Steps:
// 1. Open what the plan wants and is not open yet; what fails is told.
// 2. With nothing open at the end, leave all as it was.
// 3. Close what the plan no longer wants, start what is new. An interface that has left and come back is
//    another one, whatever its address.
// 4. Join and leave groups until each place is in those that it is to hear.
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
  for (auto& [key, place] : places_) {
    if (next.count(key) == 0) {
      Close(place);
    }
  }
  const bool broadcast_stays = broadcast_ && plan.broadcast == plan_.broadcast && plan.port == plan_.port;
  places_ = std::move(next);
  if (plan.multicast_hops != plan_.multicast_hops) {
    for (const auto& [key, place] : places_) {
      place.unicast->SetGroupHops(plan.multicast_hops);
    }
  }
  plan_ = plan;
  for (const Key& key : opened) {
    places_.at(key).Start();
  }
  for (const ListenPlace& wanted : plan.places) {
    LeaveUnwanted(wanted);
  }
  for (const ListenPlace& wanted : plan.places) {
    JoinMissing(wanted, GroupsWanted(wanted), problems);
  }
  if (!broadcast_stays) {
    OpenBroadcast(plan, problems);
  }
  return true;
}

// Only what has changed is looked at: registrations come in floods.
void Listeners::HearTypes(std::vector<std::uint16_t> numbers, std::vector<std::string>& problems) {
  std::vector<std::uint16_t> added;
  std::vector<std::uint16_t> gone;
  std::set_difference(numbers.begin(), numbers.end(), types_.begin(), types_.end(),
                      std::back_inserter(added));
  std::set_difference(types_.begin(), types_.end(), numbers.begin(), numbers.end(), std::back_inserter(gone));
  types_ = std::move(numbers);
  for (auto& [key, place] : places_) {
    for (const asio::ip::address& group : GroupsOfTypes(gone)) {
      if (place.joined.count(group) > 0) {
        Leave(place, group);
      }
    }
  }
  for (const ListenPlace& wanted : plan_.places) {
    if (wanted.group && wanted.address.is_v6()) {
      JoinMissing(wanted, GroupsOfTypes(added), problems);
    }
  }
}

void Listeners::Close() {
  for (auto& [key, place] : places_) {
    Close(place);
  }
  places_.clear();
  agent_groups_.Close();
  type_groups_.Close();
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
    if (place.joined.empty()) {
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

// Others are kept off an address of IPv4 by its datagram socket, off one of IPv6 by its acceptor, which
// therefore comes first.
std::optional<Listeners::Place> Listeners::Open(const ListenPlace& wanted, const ListenPlan& plan,
                                                std::vector<std::string>& problems) {
  udp::socket unicast(io_);
  tcp::acceptor acceptor(io_);
  for (const bool streams : {wanted.address.is_v6(), wanted.address.is_v4()}) {
    const auto error = streams ? OpenAcceptor(acceptor, {wanted.address, plan.port})
                               : OpenUnicastSocket(unicast, {wanted.address, plan.port}, plan.multicast_hops,
                                                   wanted.interface_index);
    if (error) {
      problems.push_back(
          CannotServe(streams ? "TCP" : "UDP", wanted.address, plan.port, wanted.interface_name, error));
      return std::nullopt;
    }
  }
  Place place;
  place.unicast = std::make_shared<DatagramListener>(std::move(unicast), receiver_);
  place.stream = std::make_shared<StreamListener>(std::move(acceptor), connections_);
  place.interface_index = wanted.interface_index;
  return place;
}

void Listeners::Close(Place& place) {
  while (!place.joined.empty()) {
    const asio::ip::address group = *place.joined.begin();
    Leave(place, group);
  }
  place.unicast->Close();
  place.stream->Close();
}

std::set<asio::ip::address> Listeners::GroupsWanted(const ListenPlace& wanted) const {
  std::set<asio::ip::address> groups;
  if (!wanted.group) {
    return groups;
  }
  const std::vector<asio::ip::address> fixed = GroupsFor(wanted.address);
  groups.insert(fixed.begin(), fixed.end());
  if (wanted.address.is_v6()) {
    groups.merge(GroupsOfTypes(types_));
  }
  return groups;
}

// On another interface than before there are no memberships any more.
void Listeners::LeaveUnwanted(const ListenPlace& wanted) {
  const auto found = places_.find({wanted.address, plan_.port});
  if (found == places_.end()) {
    return;
  }
  Place& place = found->second;
  const std::set<asio::ip::address> groups = GroupsWanted(wanted);
  const bool moved = place.interface_index != wanted.interface_index;
  for (const asio::ip::address& group : std::set(place.joined)) {
    if (moved || groups.count(group) == 0) {
      Leave(place, group);
    }
  }
  if (moved) {
    place.interface_index = wanted.interface_index;
    static_cast<void>(place.unicast->SendGroupsBy(wanted.interface_index));
  }
}

// Why something is not heard is told once for all groups of a kind.
void Listeners::JoinMissing(const ListenPlace& wanted, const std::set<asio::ip::address>& groups,
                            std::vector<std::string>& problems) {
  const auto place = places_.find({wanted.address, plan_.port});
  std::set<std::string> unheard;
  for (const asio::ip::address& group : groups) {
    if (place == places_.end() || place->second.joined.count(group) > 0) {
      continue;
    }
    if (const auto error = Join(place->second, group)) {
      unheard.insert((IsOfTypes(group) ? "requests by multicast for some types of services are not heard on "
                                       : "multicast requests are not heard on ") +
                     wanted.address.to_string() + " (" + wanted.interface_name + "): " + error.message());
    }
  }
  problems.insert(problems.end(), unheard.begin(), unheard.end());
}

asio::error_code Listeners::Join(Place& place, const asio::ip::address& group) {
  const asio::ip::address& local = place.unicast->local_address();
  asio::error_code error;
  if (UnicastSocketHearsGroup(local)) {
    error = place.unicast->Join(group, place.interface_index);
  } else if (group.is_v6()) {
    error = (IsOfTypes(group) ? type_groups_ : agent_groups_)
                .Join({group.to_v6(), place.interface_index}, plan_.port, place.unicast);
  } else {
    udp::socket socket(io_);
    error = OpenGroupSocket(socket, group.to_v4(), plan_.port, local.to_v4());
    if (!error) {
      place.group = std::make_shared<DatagramListener>(
          std::move(socket), receiver_,
          [reply_by = place.unicast](const asio::ip::address&) { return reply_by.get(); });
      place.group->Start();
    }
  }
  if (!error) {
    place.joined.insert(group);
  }
  return error;
}

// A membership that is already gone, with its interface, needs no leaving.
void Listeners::Leave(Place& place, const asio::ip::address& group) {
  place.joined.erase(group);
  if (UnicastSocketHearsGroup(place.unicast->local_address())) {
    static_cast<void>(place.unicast->Leave(group, place.interface_index));
  } else if (group.is_v6()) {
    (IsOfTypes(group) ? type_groups_ : agent_groups_)
        .Leave({group.to_v6(), place.interface_index}, place.unicast->port());
  } else {
    place.group->Close();
    place.group.reset();
  }
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
  for (const ListenPlace& planned : plan_.places) {
    const auto place = places_.find({planned.address, plan_.port});
    const Interface network{planned.interface_name, planned.address, planned.netmask, true};
    if (place != places_.end() && IsOnOwnNetwork({network}, sender)) {
      return place->second.unicast.get();
    }
  }
  return nullptr;
}

}  // namespace slp
