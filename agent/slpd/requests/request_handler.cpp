#include "slpd/requests/request_handler.h"

#include <algorithm>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "slpd/requests/request_context.h"
#include "text/effort.h"
#include "text/fold.h"
#include "text/ip_address.h"
#include "text/language.h"
#include "text/string_list.h"
#include "wire/codec.h"
#include "wire/reader.h"
#include "wire/wire_constants.h"

namespace slp {
namespace {

/// The header's language also of a message that does not decode; "en" when it cannot be read.
std::string PeekLanguage(std::span<const std::uint8_t> request) {
  Reader reader(request);
  reader.Take(kPeekedHeaderSize);
  std::string language = reader.Text(reader.U16());
  return IsValidLanguageTag(language) ? language : "en";
}

/// Bytes that the reply may have. A sender beyond the own networks may be a forged one: it never gets more
/// than was sent in its name, and asks again over TCP.
std::size_t ReplyLimit(std::size_t request_size, const RequestOrigin& origin, std::size_t mtu) {
  if (origin.transport == Transport::kTcp) {
    return kMaximumMessageLength;
  }
  const bool trusted = origin.own_host || origin.own_network || origin.trusted_network;
  return trusted ? mtu : std::min(mtu, request_size);
}

/// Whether a previous responder list names this agent; entries that are no addresses match none (RFC 2608
/// section 8.1). A loopback address from another host means that host and not this one.
bool NamesThisAgent(const std::string& previous_responders, const AgentSettings& settings,
                    const RequestOrigin& origin) {
  std::vector<std::string> named = SplitStringList(previous_responders);
  if (!origin.own_host) {
    std::erase_if(named, IsLoopbackAddress);
  }
  return ListsIntersect(named, settings.own_addresses);
}

struct PreviousResponders {
  const std::string* operator()(const SrvRqst& request) const { return &request.previous_responders; }
  const std::string* operator()(const AttrRqst& request) const { return &request.previous_responders; }
  const std::string* operator()(const SrvTypeRqst& request) const { return &request.previous_responders; }
  template <typename Other>
  const std::string* operator()(const Other&) const {
    return nullptr;
  }
};

struct Dispatch {
  const RequestContext& context;

  Answer operator()(const SrvRqst& request) const { return AnswerServiceRequest(context, request); }
  Answer operator()(const AttrRqst& request) const { return AnswerAttributeRequest(context, request); }
  Answer operator()(const SrvTypeRqst& request) const { return AnswerServiceTypeRequest(context, request); }
  Answer operator()(const SrvReg& request) const { return AnswerRegistration(context, request); }
  Answer operator()(const SrvDereg& request) const { return AnswerDeregistration(context, request); }
  template <typename Other>
  Answer operator()(const Other&) const {
    return Silence{"no request"};
  }
};

/// Whether a reply says something to a request that many got: neither an error nor nothing at all.
struct SaysSomething {
  bool operator()(const SrvRply& reply) const { return reply.error == Error::kOk && !reply.urls.empty(); }
  bool operator()(const AttrRply& reply) const {
    return reply.error == Error::kOk && !reply.attributes.empty();
  }
  bool operator()(const SrvTypeRply& reply) const {
    return reply.error == Error::kOk && !reply.types.empty();
  }
  bool operator()(const SaAdvert&) const { return true; }
  bool operator()(const DaAdvert& reply) const { return reply.error == Error::kOk; }
  template <typename Other>
  bool operator()(const Other&) const {
    return false;
  }
};

}  // namespace

Answer ErrorAnswer(FunctionId request, Error error) {
  switch (request) {
    case FunctionId::kSrvRqst:
      return Reply{SrvRply{error, {}}};
    case FunctionId::kSrvReg:
    case FunctionId::kSrvDereg:
      return Reply{SrvAck{error}};
    case FunctionId::kAttrRqst:
      return Reply{AttrRply{error, {}, {}}};
    case FunctionId::kSrvTypeRqst:
      return Reply{SrvTypeRply{error, {}}};
    default:
      return Silence{"malformed, and of a kind that has no reply"};
  }
}

RequestHandler::RequestHandler(Registry& registry, const AgentSettings& settings, EventSink& events,
                               ProcessProbe process_exists)
    : registry_(registry), settings_(settings), events_(events), process_exists_(std::move(process_exists)) {}

void RequestHandler::SetSettings(const AgentSettings& settings) {
  settings_ = settings;
}

Instant RequestHandler::WaitBefore(std::span<const std::uint8_t> request, const RequestOrigin& origin,
                                   Instant now) const {
  const bool told = !settings_.directory_agent || now >= settings_.announced_from || origin.own_host;
  if (told || origin.transport != Transport::kTcp) {
    return Instant(0);
  }
  const Result<Message> message = Decode(request);
  const SrvRqst* const search = message ? std::get_if<SrvRqst>(&message->body) : nullptr;
  return search != nullptr && EqualFolded(search->service_type, "service:directory-agent")
             ? settings_.announced_from - now
             : Instant(0);
}

// 1. What has expired goes first, whether or not a timer has come round.
// 2. A message too short for a header has no reply.
// 3. One that does not decode gets an error of the right kind, with the transaction id that it began with.
// 4. One that this agent has answered before is left alone (RFC 2608 section 6.3).
// 5. Each kind has its own answer.
// 6. A request that took too many comparisons is told of.
// 7. A request that was multicast gets neither errors nor empty replies (RFC 2608 section 7, 8.2).
// 8. The reply carries the request's language and transaction id and is made to fit.
std::optional<Bytes> RequestHandler::Handle(std::span<const std::uint8_t> request,
                                            const RequestOrigin& origin, Instant now) {
  registry_.Expire(now);

  const auto drop = [&](std::string_view reason) {
    events_.OnDropped(reason, request.size(), origin);
    return std::nullopt;
  };
  const std::optional<HeaderPeek> peek = PeekHeader(request);
  if (!peek) {
    return drop("too short for a header");
  }

  Message reply;
  reply.header.xid = peek->xid;
  const bool multicast = peek->request_multicast || origin.transport == Transport::kUdpMulticast;
  const std::size_t limit = ReplyLimit(request.size(), origin, settings_.mtu);
  const Result<Message> message = Decode(request);
  Answer answer = Silence{};
  if (!message) {
    reply.header.language = PeekLanguage(request);
    answer = ErrorAnswer(static_cast<FunctionId>(peek->function), message.error());
  } else {
    Effort effort(settings_.request_effort);
    const std::uint64_t touched_before = registry_.touched();
    events_.OnMessageIn(*message, origin);
    reply.header.language = message->header.language;
    const std::string* previous_responders = std::visit(PreviousResponders{}, message->body);
    if (previous_responders != nullptr && NamesThisAgent(*previous_responders, settings_, origin)) {
      return drop("answered before: this agent is a previous responder");
    }
    if (IsValidLanguageTag(message->header.language)) {
      answer = std::visit(Dispatch{{registry_, settings_, events_, process_exists_, known_agents_,
                                    message->header, origin, now, multicast, limit, effort}},
                          message->body);
    } else {
      // RFC 2608 section 7: an omitted language tag makes a registration an invalid one.
      answer = ErrorAnswer(message->function(), message->function() == FunctionId::kSrvReg
                                                    ? Error::kInvalidRegistration
                                                    : Error::kParseError);
    }
    if (effort.exhausted()) {
      events_.OnTooMuchToCompare(origin, registry_.touched() - touched_before);
    }
  }

  if (const Silence* silence = std::get_if<Silence>(&answer)) {
    return drop(silence->reason);
  }
  reply.body = std::move(std::get<Reply>(answer).body);
  reply.header.overflow = std::get<Reply>(answer).cut;
  if (multicast && !std::visit(SaysSomething{}, reply.body)) {
    return drop(message ? "multicast: nothing to say" : "multicast and malformed");
  }
  Result<Bytes> bytes = EncodeFor(reply, origin, request.size(), now);
  if (!bytes) {
    return drop("no room for a reply");
  }
  events_.OnMessageOut(reply, origin, bytes->size());
  return std::move(bytes).value();
}

// A stream carries as much of the reply as a message can. A datagram carries the whole reply or none of it,
// and then the client comes back over TCP: when the reply is too long, or when the sender has had all that it
// may have in this second. The own host has no rate, since nobody else can send in its name.
Result<Bytes> RequestHandler::EncodeFor(const Message& reply, const RequestOrigin& origin,
                                        std::size_t request_size, Instant now) {
  const std::size_t limit = ReplyLimit(request_size, origin, settings_.mtu);
  if (origin.transport == Transport::kTcp) {
    return EncodeWithin(reply, limit);
  }
  Result<Bytes> whole = Encode(reply);
  const bool fits = whole && whole->size() <= limit;
  const bool within_rate = origin.own_host || reply_rate_.Take(origin.address, now, settings_.reply_rate);
  if (fits && within_rate) {
    return whole;
  }
  Result<Bytes> bare = EncodeBare(reply, within_rate ? limit : std::min(limit, request_size));
  // An acknowledgment has nothing to leave out.
  return fits && bare && whole->size() == bare->size() ? std::move(whole) : std::move(bare);
}

}  // namespace slp
