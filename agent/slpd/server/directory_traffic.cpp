#include "slpd/server/directory_traffic.h"

#include <algorithm>
#include <utility>

#include "net/addresses.h"
#include "slpd/directory/advertisement.h"
#include "slpd/earlier.h"
#include "slpd/server/message_text.h"
#include "text/string_list.h"
#include "wire/codec.h"

namespace slp {
namespace {

/// How often configured names are looked up when no interval for searches is set (CONFIG_DA_FIND, RFC 2608
/// section 13).
constexpr Seconds kNamesAgain{900};

}  // namespace

DirectoryTraffic::DirectoryTraffic(asio::io_context& io, Listeners& listeners, const Registry& registry,
                                   Log& log, DirectoryClient::Random random, OnReply on_reply,
                                   std::function<void()> on_names)
    : io_(io),
      listeners_(listeners),
      log_(log),
      on_reply_(std::move(on_reply)),
      names_(io, log, std::move(on_names)),
      client_(registry, *this, std::move(random)) {}

DirectoryTraffic::~DirectoryTraffic() {
  for (const auto& [address, stream] : streams_) {
    if (const auto request = stream.lock()) {
      request->Close();
    }
  }
}

void DirectoryTraffic::Apply(const AgentSettings& settings, const Properties& properties, Instant now) {
  if (advertiser_.running() && !settings.directory_agent) {
    SayFarewell();
  }
  settings_ = settings;
  broadcast_only_ = properties.GetBool("net.slp.isBroadcastOnly");
  trace_ = properties.GetBool("net.slp.traceDATraffic");
  if (settings_.directory_agent) {
    advertiser_.Start(settings_.heartbeat, std::max(now, settings_.announced_from));
  }
  std::vector<std::string> problems;
  client_settings_ = DirectoryClientSettings::From(properties, settings, problems);
  for (std::string& configured : client_settings_.configured) {
    // As the sockets write it where its messages come from.
    if (const auto address = ParseAnyAddress(configured)) {
      configured = address->to_string();
    }
  }
  names_.Apply(client_settings_.names, client_settings_.ipv6,
               client_settings_.interval > Seconds(0) ? client_settings_.interval : kNamesAgain);
  UseNames(now);
  for (const std::string& problem : problems) {
    log_.Write(LogKind::kProblem, problem);
  }
}

void DirectoryTraffic::UseNames(Instant now) {
  DirectoryClientSettings complete = client_settings_;
  complete.configured = ListUnion(std::move(complete.configured), names_.Addresses());
  client_.Apply(complete, now);
}

bool DirectoryTraffic::Wants(std::span<const std::uint8_t> message) {
  const auto header = PeekHeader(message);
  return header && (header->function == static_cast<std::uint8_t>(FunctionId::kDaAdvert) ||
                    header->function == static_cast<std::uint8_t>(FunctionId::kSrvAck));
}

void DirectoryTraffic::TakeMessage(const Message& message, std::size_t size, const RequestOrigin& origin,
                                   Instant now) {
  TraceMessage("from ", origin.address, message);
  if (message.function() == FunctionId::kDaAdvert) {
    client_.OnAdvertisement(message, size, origin, now);
  } else if (message.function() == FunctionId::kSrvAck) {
    client_.OnAcknowledgment(message, origin, now);
  }
}

void DirectoryTraffic::Tick(Instant now) {
  if (advertiser_.TakeDue(now)) {
    Advertise(false);
  }
  client_.Tick(now);
}

std::optional<Instant> DirectoryTraffic::NextDue(Instant now) const {
  return Earlier(advertiser_.NextDue(), client_.NextDue(now));
}

void DirectoryTraffic::SayFarewell() {
  if (advertiser_.running()) {
    Advertise(true);
    advertiser_.Stop();
  }
}

// An advertisement must fit a datagram; one that is too long leaves the attributes out, which it may.
void DirectoryTraffic::Advertise(bool leaving) const {
  listeners_.SendToAll(broadcast_only_, [&](const asio::ip::address& address) {
    Message message = MakeUnsolicitedAdvertisement(settings_, address.to_string(), leaving);
    Result<Bytes> bytes = Encode(message);
    if (!bytes || bytes->size() > settings_.mtu) {
      std::get<DaAdvert>(message.body).attributes.clear();
      bytes = Encode(message);
    }
    return bytes ? std::move(bytes).value() : Bytes();
  });
}

void DirectoryTraffic::SendToAll(const std::function<Message(bool loopback)>& message) {
  listeners_.SendToAll(broadcast_only_, [&](const asio::ip::address& address) {
    Result<Bytes> bytes = Encode(message(address.is_loopback()));
    return bytes ? std::move(bytes).value() : Bytes();
  });
}

void DirectoryTraffic::Send(const DirectoryPeer& peer, const Message& message) {
  TraceMessage("to ", peer.address, message);
  asio::error_code error;
  const auto address = asio::ip::make_address(peer.address, error);
  if (const Result<Bytes> bytes = Encode(message); bytes && !error) {
    listeners_.SendTo(*bytes, address, peer.local_address);
  }
}

void DirectoryTraffic::SendByStream(const DirectoryPeer& peer, const Message& message) {
  TraceMessage("to ", peer.address, message);
  asio::error_code error;
  const auto address = asio::ip::make_address(peer.address, error);
  const auto local = listeners_.LocalAddressTowards(address, peer.local_address);
  Result<Bytes> bytes = Encode(message);
  if (error || !local || !bytes) {
    return;
  }
  std::erase_if(streams_, [](const auto& entry) { return entry.second.expired(); });
  auto& stream = streams_[peer.address];
  if (const auto earlier = stream.lock()) {
    earlier->Close();
  }
  const Sender sender{address, *local, Transport::kTcp};
  stream = StreamRequest::Start(
      io_, {*local, 0}, {address, listeners_.port()}, std::move(bytes).value(), kLongestStream,
      [this, sender](std::span<const std::uint8_t> reply) { on_reply_(reply, sender); });
}

void DirectoryTraffic::Tell(bool problem, const std::string& text) {
  log_.Write(problem ? LogKind::kProblem : LogKind::kState, "slpd: " + text);
}

void DirectoryTraffic::TraceMessage(const std::string& direction, const std::string& address,
                                    const Message& message) const {
  if (trace_) {
    log_.Write(LogKind::kMessage, direction + "directory agent " + address + ": " + Describe(message));
  }
}

}  // namespace slp
