#include "slpd/directory/directory_client.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "slpd/earlier.h"
#include "text/fold.h"
#include "text/ip_address.h"
#include "text/service_url.h"
#include "text/string_list.h"
#include "wire/codec.h"

namespace slp {
namespace {

/// An agent that was configured and does not answer is asked again after this, doubled each time up to
/// CONFIG_DA_FIND (RFC 2608 section 13).
constexpr Seconds kFirstAskAgain{15};
constexpr Seconds kLastAskAgain{900};

/// How long an agent beyond the own networks, which is asked once, may take to answer; so often at most it is
/// asked because of what comes in its name.
constexpr Seconds kOnlyWait{2};

/// An agent that has answered so lately is taken to be there.
constexpr Seconds kAnsweredLately{5};

/// Whether the advertisement speaks for the address that it comes from: nobody else can have registrations
/// sent somewhere.
bool SpeaksForSender(const DaAdvert& advert, const RequestOrigin& origin) {
  const Result<ServiceUrl> url = ParseServiceUrl(advert.url);
  return url && SameIpAddress(url->host, origin.address) && EqualFolded(url->type, "service:directory-agent");
}

constexpr const char* kGoesDown = "is going down";

/// Why an answer makes no agent known, as what the agent does; empty: it makes one known. One that has been
/// cut says nothing, but that there is no use in asking `by_stream` for it.
std::string FaultOf(const Message& answer, bool by_stream, const RequestOrigin& origin) {
  const auto& advert = std::get<DaAdvert>(answer.body);
  if (advert.error != Error::kOk) {
    return "answers with error " + std::to_string(static_cast<int>(advert.error));
  }
  if (answer.header.overflow) {
    return by_stream ? "cuts its answer by TCP, too" : "";
  }
  if (!SpeaksForSender(advert, origin)) {
    return "names another address in its answer, " + advert.url;
  }
  // RFC 2608 section 12.2.2.
  if (advert.boot_timestamp == 0) {
    return kGoesDown;
  }
  return SplitStringList(advert.scopes).empty() ? "serves no scopes" : "";
}

/// Whether anybody could have sent in the sender's name, who must not be made to get more than was sent.
bool MayBeForged(const RequestOrigin& origin) {
  return origin.transport != Transport::kTcp && !origin.own_host && !origin.own_network &&
         !origin.trusted_network;
}

}  // namespace

bool DirectoryClient::Agent::Is(const DaAdvert& advert) const {
  return known && boot_timestamp == advert.boot_timestamp && scopes == SplitStringList(advert.scopes) &&
         refreshes.interval() == MinimumRefreshInterval(advert.attributes);
}

bool DirectoryClient::Agent::Forgettable() const {
  return !known && !configured && !outstanding && !hint && !ask_at;
}

DirectoryClient::DirectoryClient(const Registry& registry, DirectoryWire& wire, Random random)
    : registry_(registry), wire_(wire), random_(std::move(random)) {}

// 1. The configured agents are asked for their advertisements (RFC 2608 section 12); those that are no longer
// configured have to show up by themselves again.
// 2. The search begins after a random wait (section 12.2.1).
// 3. Scopes decide what is registered where; and what an agent has been told from an address that is gone, it
// has of another host.
void DirectoryClient::Apply(const DirectoryClientSettings& settings, Instant now) {
  const bool first = !std::exchange(applied_, true);
  const DirectoryClientSettings before = std::exchange(settings_, settings);
  if (!first && before == settings) {
    return;
  }
  std::erase_if(agents_, [&](const auto& entry) {
    return IsOwn(entry.first) ||
           (entry.second.configured && !ListContains(settings_.configured, entry.first)) ||
           (!entry.second.configured && !settings_.active && !settings_.passive);
  });
  for (const std::string& address : settings_.configured) {
    if (!IsOwn(address)) {
      Agent& agent = agents_[address];
      agent.peer.address = address;
      if (!std::exchange(agent.configured, true)) {
        agent.ask_at = now + RandomWait();
      }
    }
  }
  if (!settings_.active || settings_.interval == Seconds(0)) {
    discovery_.Stop();
  } else if (first || !before.active || before.own_addresses != settings.own_addresses ||
             before.interval != settings.interval) {
    discovery_.Plan(now + RandomWait());
  }
  for (auto& [address, agent] : agents_) {
    const bool moved = !agent.peer.local_address.empty() && !IsOwn(agent.peer.local_address);
    if (moved) {
      agent.peer.local_address.clear();
    }
    if (agent.known && before.check_period != settings.check_period) {
      PlanCheck(agent, now);
    }
    if (agent.known && (moved || before.scopes != settings.scopes)) {
      Begin(agent, now);
    }
  }
}

// 1. Only what was asked for, what the group may tell, and what comes from an agent that is known counts.
// 2. What was not asked for is only a hint.
// 3. An answer that was cut says nothing but that there is an agent, which is asked again by TCP, where
// nothing need be cut.
// 4. An answer that makes no agent known ends the question nonetheless.
void DirectoryClient::OnAdvertisement(const Message& message, std::size_t size, const RequestOrigin& origin,
                                      Instant now) {
  const auto& advert = std::get<DaAdvert>(message.body);
  Agent* const agent = Find(origin.address);
  if (leaving_ || !WantsAdvertisement(message, origin, agent)) {
    return;
  }
  const std::uint16_t xid = message.header.xid;
  if (xid == 0) {
    return TakeHint(message, size, origin, now);
  }
  if (discovery_.Answers(xid)) {
    discovery_.AddResponder(std::string(WithoutZone(origin.address)));
  }
  bool asked = false;
  bool by_stream = origin.transport == Transport::kTcp;
  if (agent != nullptr) {
    agent->hint.reset();
    agent->answered_at = now;
    asked = agent->outstanding && agent->outstanding->message.header.xid == xid;
    if (asked) {
      by_stream |= agent->outstanding->stream;
      agent->outstanding.reset();
    }
  }
  const std::string fault = FaultOf(message, by_stream, origin);
  if (fault.empty()) {
    message.header.overflow ? AskByStream(origin, now) : TakeAdvertisement(advert, origin, now);
  } else if (agent != nullptr && agent->known && fault == kGoesDown) {
    Lose(origin.address, fault, now);
  } else if (asked) {
    TakeUselessAnswer(*agent, fault, now);
  }
}

bool DirectoryClient::WantsAdvertisement(const Message& message, const RequestOrigin& origin,
                                         const Agent* agent) const {
  if (!IsIpAddress(origin.address) || IsOwn(origin.address)) {
    return false;
  }
  const std::uint16_t xid = message.header.xid;
  if (xid == 0) {
    return settings_.passive || agent != nullptr;
  }
  return discovery_.Answers(xid) ||
         (agent != nullptr && agent->outstanding && agent->outstanding->message.header.xid == xid);
}

void DirectoryClient::AskByStream(const RequestOrigin& origin, Instant now) {
  if (Find(origin.address) == nullptr && !HasRoom(MayBeForged(origin))) {
    return;
  }
  Agent& agent = agents_[origin.address];
  agent.peer = {origin.address, origin.local_address};
  agent.beyond = MayBeForged(origin);
  agent.ask_by_stream = true;
  agent.ask_at = now;
}

// 1. An agent that is known stays so, and is asked again in its turn.
// 2. A configured one is asked again later, which is told until it is told of something else.
// 3. Any other is forgotten, with nothing left to do.
void DirectoryClient::TakeUselessAnswer(Agent& agent, const std::string& fault, Instant now) {
  agent.ask_by_stream = false;
  if (agent.ask_at) {
    return;
  }
  if (agent.known) {
    return PlanCheck(agent, now);
  }
  if (!agent.configured) {
    return;
  }
  const bool told = std::exchange(agent.fault, fault) == fault;
  const std::string address = agent.peer.address;
  Lose(address, fault, now);
  if (!told) {
    wire_.Tell(true, "directory agent " + address + " of net.slp.DAAddresses " + fault +
                         "; nothing is registered there; asked again in " +
                         std::to_string(agent.ask_again.count()) +
                         " seconds, then after longer and longer waits");
  }
}

// 1. One of the own networks that is going down gets nothing any more (RFC 2608 section 12.2.2); another one
// is asked first.
// 2. A heart beat that says what is known changes nothing, nor does it spare a question.
// 3. All else is asked for after a random wait, as many hosts hear it; of one who may be a forged one only
// with a question that is not longer, and not while another one waits.
void DirectoryClient::TakeHint(const Message& message, std::size_t size, const RequestOrigin& origin,
                               Instant now) {
  const auto& advert = std::get<DaAdvert>(message.body);
  if (advert.error != Error::kOk || (!message.header.overflow && !SpeaksForSender(advert, origin))) {
    return;
  }
  const bool beyond = MayBeForged(origin);
  const bool farewell = !message.header.overflow && advert.boot_timestamp == 0;
  Agent* const known = Find(origin.address);
  if (farewell && (known == nullptr || !known->known)) {
    return;
  }
  if (farewell && !beyond) {
    return Lose(origin.address, kGoesDown, now);
  }
  if (!message.header.overflow && known != nullptr && known->Is(advert)) {
    return;
  }
  const bool says_nothing = !message.header.overflow && SplitStringList(advert.scopes).empty();
  if (says_nothing || (beyond && QuestionSize() > size) || (known == nullptr && !HasRoom(beyond))) {
    return;
  }
  Agent& agent = agents_[origin.address];
  if (known == nullptr) {
    agent.peer = {origin.address, origin.local_address};
  }
  agent.beyond = beyond;
  if (!agent.hint) {
    agent.hint = Hint{std::max(now + RandomWait(), agent.next_question)};
  }
  agent.hint->farewell |= farewell;
}

// One that is new, or has another boot timestamp, has none of the own services; one that serves other scopes
// has others of them.
void DirectoryClient::TakeAdvertisement(const DaAdvert& advert, const RequestOrigin& origin, Instant now) {
  const bool beyond = MayBeForged(origin);
  if (Find(origin.address) == nullptr && !HasRoom(beyond)) {
    return;
  }
  std::vector<std::string> scopes = SplitStringList(advert.scopes);
  Agent& agent = agents_[origin.address];
  agent.peer = {origin.address, origin.local_address};
  agent.beyond = beyond;
  agent.answered_at = now;
  agent.ask_by_stream = false;
  agent.ask_again = Seconds(0);
  agent.fault.clear();
  PlanCheck(agent, now);
  const bool same = agent.known && agent.boot_timestamp == advert.boot_timestamp && agent.scopes == scopes;
  agent.refreshes.SetInterval(MinimumRefreshInterval(advert.attributes));
  if (same) {
    return;
  }
  wire_.Tell(false, "directory agent " + origin.address + (agent.known ? " has changed" : " is there") +
                        ", scopes " + JoinStringList(scopes));
  agent.known = true;
  agent.url = advert.url;
  agent.scopes = std::move(scopes);
  agent.boot_timestamp = advert.boot_timestamp;
  Begin(agent, now);
}

// One that is asked for something shows by that whether it is there.
void DirectoryClient::CheckSoon(Instant now) {
  for (auto& [address, agent] : agents_) {
    if (agent.known && !agent.outstanding) {
      agent.ask_at = Earlier(agent.ask_at, std::max(now, agent.answered_at + kAnsweredLately));
    }
  }
}

// A known agent that has just advertised itself when it was asked is asked again after the period.
void DirectoryClient::PlanCheck(Agent& agent, Instant now) const {
  agent.ask_at.reset();
  if (settings_.check_period > Seconds(0)) {
    agent.ask_at = now + settings_.check_period;
  }
}

void DirectoryClient::Tick(Instant now) {
  // A random number costs a call of the system, and most ticks have nothing to do with a search.
  const std::optional<Instant> search = discovery_.NextDue();
  if (search && *search <= now) {
    Search(now);
  }
  std::vector<std::string> silent;
  for (auto& [address, agent] : agents_) {
    if (agent.outstanding && !Resend(agent, now)) {
      silent.push_back(address);
    } else {
      Advance(agent, now);
    }
  }
  for (const std::string& address : silent) {
    TakeSilence(address, now);
  }
  std::erase_if(agents_, [](const auto& entry) { return entry.second.Forgettable(); });
}

// Who is known and has not answered a search is asked itself when it ends.
void DirectoryClient::Search(Instant now) {
  const bool ran = discovery_.running();
  const bool due = discovery_.TakeDue(settings_, NewXid(), now);
  if (!ran) {
    search_began_ = now;
  }
  if (due) {
    wire_.SendToAll([this](bool loopback) { return discovery_.Request(settings_, loopback); });
  } else if (ran) {
    for (auto& [address, agent] : agents_) {
      if (agent.known && agent.answered_at < search_began_) {
        agent.ask_at = now;
      }
    }
  }
}

// The silence of one that was asked but once says nothing, unless it has said farewell.
void DirectoryClient::TakeSilence(const std::string& address, Instant now) {
  Agent& agent = agents_.at(address);
  if (!agent.outstanding->once) {
    return Lose(address, "does not answer", now);
  }
  if (agent.known && agent.outstanding->farewell) {
    return Lose(address, kGoesDown, now);
  }
  agent.outstanding.reset();
  Advance(agent, now);
}

void DirectoryClient::AskForHint(Agent& agent, Instant now) {
  const Hint hint = *std::exchange(agent.hint, std::nullopt);
  Start(agent, AskMessage(), false, now);
  if (agent.beyond) {
    agent.outstanding->once = true;
    agent.outstanding->farewell = hint.farewell;
    agent.outstanding->next = agent.next_question = now + kOnlyWait;
  }
}

// The next thing to do with an agent, when nothing is on its way to it: ask for its advertisement, else tell
// it of the next own service.
void DirectoryClient::Advance(Agent& agent, Instant now) {
  if (agent.outstanding) {
    return;
  }
  if (agent.hint && agent.hint->ask_at <= now) {
    return AskForHint(agent, now);
  }
  if (agent.ask_at && *agent.ask_at <= now) {
    agent.ask_at.reset();
    return Start(agent, AskMessage(), agent.ask_by_stream, now);
  }
  if (agent.known) {
    TellNext(agent, now);
  }
}

// False when it has been sent often enough without an answer (RFC 2608 section 12.3).
bool DirectoryClient::Resend(Agent& agent, Instant now) {
  Outstanding& outstanding = *agent.outstanding;
  if (outstanding.next > now) {
    return true;
  }
  if (outstanding.once || outstanding.stream || outstanding.tries >= settings_.datagram_waits.size()) {
    return false;
  }
  outstanding.next = now + settings_.datagram_waits[outstanding.tries++];
  Emit(agent, outstanding);
  return true;
}

void DirectoryClient::Start(Agent& agent, Message message, bool stream, Instant now) {
  const Instant wait =
      stream || settings_.datagram_waits.empty() ? Instant(kLongestStream) : settings_.datagram_waits.front();
  agent.outstanding = Outstanding{std::move(message), stream, 1, now + wait, false, false};
  Emit(agent, *agent.outstanding);
}

void DirectoryClient::Emit(const Agent& agent, const Outstanding& outstanding) {
  if (outstanding.stream) {
    wire_.SendByStream(agent.peer, outstanding.message);
  } else {
    wire_.Send(agent.peer, outstanding.message);
  }
}

Message DirectoryClient::AskMessage() {
  return {.header = {.xid = NewXid(), .language = settings_.language, .extensions = {}},
          .body = SrvRqst{.previous_responders = {},
                          .service_type = "service:directory-agent",
                          .scopes = {},
                          .predicate = {},
                          .spi = {}}};
}

std::size_t DirectoryClient::QuestionSize() {
  const Result<Bytes> question = Encode(AskMessage());
  return question ? question->size() : std::numeric_limits<std::size_t>::max();
}

// 1. A configured agent is asked again later, after longer and longer waits.
// 2. Any other is forgotten; a search may find it, or another one. What has been heard of it since it was
// last asked is still asked for.
void DirectoryClient::Lose(const std::string& address, const std::string& reason, Instant now) {
  Agent& agent = agents_.at(address);
  if (agent.known) {
    wire_.Tell(false, "directory agent " + address + " " + reason);
    if (!leaving_ && settings_.active && settings_.interval > Seconds(0)) {
      discovery_.Plan(now + RandomWait());
    }
  }
  if (leaving_ || !(agent.configured || agent.hint)) {
    agents_.erase(address);
    return;
  }
  Agent left;
  left.peer = agent.peer;
  left.beyond = agent.beyond;
  left.hint = agent.hint;
  left.next_question = agent.next_question;
  if (agent.configured) {
    left.configured = true;
    left.fault = agent.fault;
    left.ask_again =
        agent.ask_again == Seconds(0) ? kFirstAskAgain : std::min(agent.ask_again * 2, kLastAskAgain);
    left.ask_at = now + left.ask_again;
  }
  agent = std::move(left);
}

std::optional<Instant> DirectoryClient::NextDue(Instant now) const {
  std::optional<Instant> next = discovery_.NextDue();
  for (const auto& [address, agent] : agents_) {
    if (agent.outstanding) {
      next = Earlier(next, agent.outstanding->next);
      continue;
    }
    next = Earlier(next, agent.ask_at);
    next = Earlier(next, agent.hint ? std::optional(agent.hint->ask_at) : std::nullopt);
    if (agent.known) {
      next = Earlier(next, agent.renewals.NextDue());
      next = Earlier(next, agent.refreshes.NextDue());
      if (!agent.queue.empty()) {
        next = Earlier(next, std::max(now, agent.register_from));
      }
    }
  }
  return next;
}

// Agents are told in the order in which they are told of everything else, one service after the other, each
// acknowledged; what an agent has not been told of yet needs no telling.
void DirectoryClient::Leave(Instant now) {
  leaving_ = true;
  discovery_.Stop();
  std::erase_if(agents_, [](const auto& entry) { return !entry.second.known; });
  for (auto& [address, agent] : agents_) {
    agent.queue.KeepDeregistrations();
    agent.refreshes.Clear();
    agent.renewals.Clear();
    if (agent.outstanding && agent.outstanding->message.function() != FunctionId::kSrvDereg) {
      agent.outstanding.reset();
    }
    agent.ask_at.reset();
    agent.hint.reset();
    agent.register_from = now;
    registry_.ForEach([&, &queue = agent.queue](const RegistrationView& registration) {
      if (registration.source != RegistrationSource::kAgent) {
        queue.Deregister(registration.url, registration.language, registration.scopes);
      }
    });
  }
  Tick(now);
}

bool DirectoryClient::left() const {
  return std::all_of(agents_.begin(), agents_.end(), [](const auto& entry) {
    return !entry.second.outstanding && entry.second.queue.empty();
  });
}

std::vector<std::string> DirectoryClient::Serving(const std::vector<std::string>& scopes) const {
  std::vector<std::string> urls;
  for (const auto& [address, agent] : agents_) {
    if (agent.known && (scopes.empty() || ListsIntersect(scopes, agent.scopes))) {
      urls.push_back(agent.url);
    }
  }
  return urls;
}

bool DirectoryClient::IsOwn(const std::string& address) const {
  return ListContains(settings_.own_addresses, WithoutZone(address));
}

DirectoryClient::Agent* DirectoryClient::Find(const std::string& address) {
  const auto found = agents_.find(address);
  return found == agents_.end() ? nullptr : &found->second;
}

bool DirectoryClient::HasRoom(bool beyond) const {
  const auto heard = std::count_if(agents_.begin(), agents_.end(),
                                   [](const auto& entry) { return !entry.second.configured; });
  const auto strangers = std::count_if(agents_.begin(), agents_.end(), [](const auto& entry) {
    return entry.second.beyond && !entry.second.known && !entry.second.configured;
  });
  return static_cast<std::size_t>(heard) < kMostAgents &&
         (!beyond || static_cast<std::size_t>(strangers) < kMostStrangers);
}

Instant DirectoryClient::RandomWait() {
  return Instant(random_() % (settings_.random_bound.count() + 1));
}

// Never 0, which unsolicited advertisements carry (RFC 2608 section 8).
std::uint16_t DirectoryClient::NewXid() {
  return static_cast<std::uint16_t>(1 + random_() % std::numeric_limits<std::uint16_t>::max());
}

}  // namespace slp
