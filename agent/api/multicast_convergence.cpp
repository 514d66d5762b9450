// 1. Open one socket for each interface.
// 2. For each of net.slp.multicastTimeouts: send the request, with everyone who has answered named in it, by
//    all interfaces, and listen for that long. Loopback addresses are named on loopback interfaces only.
//    A companion goes along. With IPv6 it goes to the groups of the link and of the site (RFC 3111 section
//    4.1), by one socket for each interface; a search for services to the group of their type, which reaches
//    those alone that have some.
// 3. A reply counts once for each sender, and only when it carries the request's XID. One that has been cut
//    is handed over as far as it goes, and fetched again in full from that sender by TCP, while the rounds go
//    on and others answer.
// 4. Send no more when two rounds in a row brought nobody new, or when the request with its list of
//    responders no longer fits a datagram.
// 5. Stop when nothing is being fetched any more, when net.slp.multicastMaximumWait is over, or when no more
//    is wanted.
#include "api/multicast_convergence.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <set>
#include <span>

#include "api/request_message.h"
#include "api/stream_fetches.h"
#include "net/addresses.h"
#include "net/datagram_socket.h"
#include "net/interfaces.h"
#include "text/fold.h"
#include "text/service_type.h"
#include "wire/codec.h"

namespace slp::client {
namespace {

using Received = DatagramSocket::Received;

constexpr int kQuietRoundsAtTheEnd = 2;

/// Datagrams that are taken from a socket between two looks at the clock, so that a flood cannot outlast the
/// time.
constexpr int kDatagramsPerLook = 64;

/// No network has so many agents; whoever invents senders cannot make a search hold more of them.
constexpr std::size_t kMostSenders = 4096;

/// One interface that requests leave by.
struct Outlet {
  DatagramSocket socket;
  bool loopback = false;
  std::uint32_t ipv6_index = 0;  ///< the interface's, of a socket for IPv6
};

std::uint32_t Ipv6GroupFor(const Message& request) {
  if (AsksForDirectoryAgents(request)) {
    return kDirectoryAgentsGroup;
  }
  const auto* services = std::get_if<SrvRqst>(&request.body);
  if (services == nullptr || EqualFolded(services->service_type, kServiceAgentType)) {
    return kAgentsGroup;
  }
  return kTypeGroupsBegin + TypeGroupNumber(services->service_type);
}

class Convergence {
 public:
  Convergence(const Message& request, const RequestContext& context, const SenderSink& sink,
              const Companion* companion)
      : request_(request),
        companion_(companion),
        context_(context),
        settings_(context.settings),
        sink_(sink),
        deadline_(context.environment.clock, settings_.multicast.maximum),
        fetches_(io_, request, context) {}

  SLPError Run() {
    OpenOutlets();
    if (outlets_.empty()) {
      return SLP_NETWORK_INIT_FAILED;
    }
    const SLPError error = SendRounds();
    Listen(deadline_, [this] { return !fetches_.empty(); });
    return error;
  }

 private:
  SLPError SendRounds() {
    int quiet_rounds = 0;
    for (const auto wait : settings_.multicast.tries) {
      const Result<Bytes> within_host = Encode(AsMulticast(request_, responders_));
      const Result<Bytes> beyond_host = Encode(AsMulticast(request_, WithoutLoopback(responders_)));
      if (!within_host || !beyond_host || within_host.value().size() > settings_.mtu) {
        return responders_.empty() ? SLP_BUFFER_OVERFLOW : SLP_OK;
      }
      if (!SendByAll(request_, within_host.value(), beyond_host.value())) {
        return senders_.empty() ? SLP_NETWORK_ERROR : SLP_OK;
      }
      SendCompanion();
      const std::size_t known = senders_.size();
      Listen(deadline_.Within(wait), [this] { return !outlets_.empty(); });
      quiet_rounds = senders_.size() == known ? quiet_rounds + 1 : 0;
      if (!wanted_ || quiet_rounds == kQuietRoundsAtTheEnd || deadline_.Passed()) {
        break;
      }
    }
    return SLP_OK;
  }

  void OpenOutlets() {
    const std::vector<std::string>& names =
        context_.handle.interfaces.empty() ? settings_.interfaces : context_.handle.interfaces;
    const auto all = EnumerateInterfaces(settings_.use_ipv6);
    if (!all) {
      return;
    }
    for (const Interface& interface : SelectInterfaces(*all, names).interfaces) {
      const bool ipv6 = interface.address.is_v6();
      if (ipv6 && std::any_of(outlets_.begin(), outlets_.end(),
                              [&](const Outlet& outlet) { return outlet.ipv6_index == interface.index; })) {
        continue;
      }
      if (std::optional<DatagramSocket> socket = OpenOutlet(interface)) {
        outlets_.push_back({std::move(*socket), interface.loopback, ipv6 ? interface.index : 0});
      }
    }
  }

  std::optional<DatagramSocket> OpenOutlet(const Interface& interface) {
    if (interface.address.is_v6()) {
      return DatagramSocket::ForIpv6Multicast(io_, interface.index, settings_.multicast_ttl);
    }
    const asio::ip::address_v4 address = interface.address.to_v4();
    return settings_.broadcast_only ? DatagramSocket::ForBroadcast(io_, address)
                                    : DatagramSocket::ForMulticast(io_, address, settings_.multicast_ttl);
  }

  std::vector<asio::ip::address> DestinationsOf(const Message& request, const Outlet& outlet) const {
    if (outlet.ipv6_index == 0) {
      return {settings_.broadcast_only ? settings_.broadcast_address : kMulticastGroup};
    }
    const std::uint32_t group = Ipv6GroupFor(request);
    return {Ipv6Group(GroupReach::kLink, group), Ipv6Group(GroupReach::kSite, group)};
  }

  /// Whether at least one interface took the request.
  bool SendByAll(const Message& request, const Bytes& within_host, const Bytes& beyond_host) {
    bool sent = false;
    for (Outlet& outlet : outlets_) {
      for (const asio::ip::address& to : DestinationsOf(request, outlet)) {
        sent =
            outlet.socket.SendTo(outlet.loopback ? within_host : beyond_host, {to, settings_.port}) || sent;
      }
    }
    return sent;
  }

  void SendCompanion() {
    if (companion_ == nullptr) {
      return;
    }
    const Result<Bytes> encoded = Encode(AsMulticast(companion_->request, {}));
    if (encoded) {
      // The search itself has told whether the interfaces take anything.
      static_cast<void>(SendByAll(companion_->request, *encoded, *encoded));
    }
  }

  /// Takes what comes until `end`, while `due`, which tells whether something may come, says so.
  template <typename Due>
  void Listen(const Deadline& end, Due due) {
    // Once more after the end: with one result the caller may have used up the time while others lay in the
    // sockets.
    for (bool over = false; wanted_ && due() && !over;) {
      over = end.Passed();
      TakeWhatComes(end);
    }
  }

  /// Waits until there is something, no longer than until `end`.
  void TakeWhatComes(const Deadline& end) {
    std::vector<AwaitedSocket> awaited = fetches_.Awaited();
    const std::size_t fetches = awaited.size();
    for (Outlet& outlet : outlets_) {
      awaited.push_back({.socket = outlet.socket.native_handle()});
    }
    WaitUntilReady(awaited, std::min(end.Remaining(), fetches_.Remaining()));
    for (const StreamFetches::Fetched& fetched : fetches_.Advance(std::span(awaited).first(fetches))) {
      if (wanted_ && ReplyError(fetched.reply) == Error::kOk) {
        Report(fetched.reply, fetched.agent);
      }
    }
    std::erase_if(outlets_, [this](Outlet& outlet) { return !TakeDatagrams(outlet.socket); });
  }

  /// False when the socket is of no use any more.
  bool TakeDatagrams(DatagramSocket& socket) {
    DatagramSocket::Datagram datagram;
    for (int i = 0; wanted_ && i < kDatagramsPerLook; ++i) {
      const Received received = socket.Receive(datagram);
      if (received == Received::kNothing || received == Received::kFailed) {
        return received == Received::kNothing;
      }
      // Nobody is refused by a group; a system that says so means something else.
      if (received == Received::kDatagram) {
        TakeReply(datagram);
      }
    }
    return true;
  }

  void TakeReply(const DatagramSocket::Datagram& datagram) {
    const asio::ip::address sender = Plain(datagram.from.address());
    if (companion_ != nullptr) {
      if (const auto reply = ReadReply(datagram.bytes, companion_->request)) {
        return companion_->on_reply(*reply, sender);
      }
    }
    const std::optional<Message> reply = ReadReply(datagram.bytes, request_);
    if (!reply || senders_.size() == kMostSenders || !senders_.insert(datagram.from).second) {
      return;
    }
    AddResponder(WithoutZone(datagram.from.address()));
    if (ReplyError(*reply) != Error::kOk) {
      return;
    }
    // Of those that have been cut, only a service reply still says something true.
    if (!reply->header.overflow || reply->function() == FunctionId::kSrvRply) {
      Report(*reply, sender);
    }
    if (reply->header.overflow && wanted_) {
      fetches_.Add(sender);
    }
  }

  void Report(const Message& reply, const asio::ip::address& sender) {
    const auto before = context_.environment.clock();
    wanted_ = sink_(reply, sender);
    // Nothing is fetched while the caller is busy with a result.
    fetches_.Postpone(context_.environment.clock() - before);
  }

  void AddResponder(const std::string& address) {
    if (std::find(responders_.begin(), responders_.end(), address) == responders_.end()) {
      responders_.push_back(address);
    }
  }

  const Message& request_;
  const Companion* const companion_;
  const RequestContext& context_;
  const RequestSettings& settings_;
  const SenderSink& sink_;
  const Deadline deadline_;
  asio::io_context io_;
  StreamFetches fetches_;
  std::vector<Outlet> outlets_;
  std::set<asio::ip::udp::endpoint> senders_;
  std::vector<std::string> responders_;
  bool wanted_ = true;
};

}  // namespace

SLPError Converge(const Message& request, const RequestContext& context, const SenderSink& sink,
                  const Companion* companion) {
  return Convergence(request, context, sink, companion).Run();
}

SLPError Converge(const Message& request, const RequestContext& context, const ReplySink& sink,
                  const Companion* companion) {
  const SenderSink from_anyone = [&](const Message& reply, const asio::ip::address&) { return sink(reply); };
  return Converge(request, context, from_anyone, companion);
}

}  // namespace slp::client
