// 1. Open one socket for each interface.
// 2. For each of net.slp.multicastTimeouts: send the request, with everyone who has answered named in it, by
//    all interfaces, and listen for that long. Loopback addresses are named on loopback interfaces only.
//    A companion goes along. With IPv6 it goes to the groups of the link and of the site (RFC 3111 section
//    4.1), by one socket for each interface.
// 3. A reply counts once for each sender, and only when it carries the request's XID. One that has been cut
//    is handed over as far as it goes, and fetched again in full from that sender by TCP.
// 4. Stop when two rounds in a row brought nobody new, when the request with its list of responders no longer
//    fits a datagram, when net.slp.multicastMaximumWait is over, or when no more is wanted.
#include "api/multicast_convergence.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <set>

#include "api/request_message.h"
#include "api/stream_exchange.h"
#include "net/addresses.h"
#include "net/datagram_socket.h"
#include "net/interfaces.h"
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

class Convergence {
 public:
  Convergence(const Message& request, const RequestContext& context, const ReplySink& sink,
              const Companion* companion)
      : request_(request),
        companion_(companion),
        context_(context),
        settings_(context.settings),
        sink_(sink),
        deadline_(context.environment.clock, settings_.multicast.maximum) {}

  SLPError Run() {
    OpenOutlets();
    if (outlets_.empty()) {
      return SLP_NETWORK_INIT_FAILED;
    }
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
      Listen(deadline_.Within(wait));
      quiet_rounds = senders_.size() == known ? quiet_rounds + 1 : 0;
      if (!wanted_ || quiet_rounds == kQuietRoundsAtTheEnd || deadline_.Passed()) {
        break;
      }
    }
    return SLP_OK;
  }

 private:
  void OpenOutlets() {
    const std::vector<std::string>& names =
        context_.handle.interfaces.empty() ? settings_.interfaces : context_.handle.interfaces;
    const std::vector<Interface> all = EnumerateInterfaces(settings_.use_ipv6);
    for (const Interface& interface : SelectInterfaces(all, names).interfaces) {
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
    const std::uint32_t group = AsksForDirectoryAgents(request) ? kDirectoryAgentsGroup : kAgentsGroup;
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

  void Listen(const Deadline& end) {
    // Once more after the end: a fetch by TCP may have used up the time while replies lay in the sockets.
    do {
      std::vector<AwaitedSocket> awaited;
      for (Outlet& outlet : outlets_) {
        awaited.push_back({.socket = outlet.socket.native_handle()});
      }
      WaitUntilReady(awaited, end.Remaining());
      std::erase_if(outlets_, [this](Outlet& outlet) { return !TakeDatagrams(outlet.socket); });
    } while (wanted_ && !outlets_.empty() && !end.Passed());
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
    if (companion_ != nullptr) {
      if (const auto reply = ReadReply(datagram.bytes, companion_->request)) {
        return companion_->on_reply(*reply, Plain(datagram.from.address()));
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
    if (!reply->header.overflow) {
      wanted_ = sink_(*reply);
      return;
    }
    // Only a service reply that has been cut still says something true.
    if (reply->function() == FunctionId::kSrvRply) {
      wanted_ = sink_(*reply);
    }
    if (wanted_) {
      FetchByStream(Plain(datagram.from.address()));
    }
  }

  void AddResponder(const std::string& address) {
    if (std::find(responders_.begin(), responders_.end(), address) == responders_.end()) {
      responders_.push_back(address);
    }
  }

  /// The whole reply of one that could send only a part; without it what came already has to do.
  void FetchByStream(const asio::ip::address& sender) {
    const Result<Bytes> encoded = Encode(request_);
    if (!encoded) {
      return;
    }
    const Exchange exchange = ExchangeByStream({sender, settings_.port}, request_, encoded.value(),
                                               deadline_.Within(settings_.unicast.maximum));
    if (exchange.end == Exchange::End::kReplied && ReplyError(*exchange.reply) == Error::kOk) {
      wanted_ = sink_(*exchange.reply);
    }
  }

  const Message& request_;
  const Companion* const companion_;
  const RequestContext& context_;
  const RequestSettings& settings_;
  const ReplySink& sink_;
  const Deadline deadline_;
  asio::io_context io_;
  std::vector<Outlet> outlets_;
  std::set<asio::ip::udp::endpoint> senders_;
  std::vector<std::string> responders_;
  bool wanted_ = true;
};

}  // namespace

SLPError Converge(const Message& request, const RequestContext& context, const ReplySink& sink,
                  const Companion* companion) {
  return Convergence(request, context, sink, companion).Run();
}

}  // namespace slp::client
