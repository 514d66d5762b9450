#include "slpd/directory/directory_client.h"

#include <algorithm>
#include <limits>
#include <utility>

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

/// What never expires here is registered with the longest lifetime there is, and again well before its end.
constexpr Seconds kRefresh{kMaximumLifetime / 2};

/// A whole exchange by TCP.
constexpr Seconds kStreamLimit{15};

std::vector<std::string> Common(const std::vector<std::string>& wanted,
                                const std::vector<std::string>& served) {
  std::vector<std::string> common = wanted;
  std::erase_if(common, [&](const std::string& scope) { return !ListContains(served, scope); });
  return common;
}

std::uint16_t SecondsLeft(const RegistrationView& registration, Instant now) {
  if (!registration.expiry) {
    return kMaximumLifetime;
  }
  const auto left = std::chrono::ceil<Seconds>(*registration.expiry - now).count();
  return static_cast<std::uint16_t>(std::clamp<decltype(left)>(left, 1, registration.lifetime));
}

/// The lifetime at an agent that wants no refresh sooner than after `interval`: a renewal has to come in
/// time.
std::uint16_t LastingLifetime(const RegistrationView& registration, Seconds interval, Instant now) {
  const auto least = std::min<std::int64_t>(2 * interval.count(), kMaximumLifetime);
  return std::max(SecondsLeft(registration, now), static_cast<std::uint16_t>(least));
}

std::optional<Instant> Earlier(const std::optional<Instant>& one, const std::optional<Instant>& other) {
  return one && other ? std::min(one, other) : (one ? one : other);
}

}  // namespace

DirectoryClient::DirectoryClient(const Registry& registry, DirectoryWire& wire, Random random)
    : registry_(registry), wire_(wire), random_(std::move(random)) {}

// 1. The configured agents are asked for their advertisements (RFC 2608 section 12); those that are no longer
// configured have to show up by themselves again.
// 2. The search begins after a random wait (section 12.2.1).
// 3. Scopes decide what is registered where.
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
    if (agents_.size() < kMostAgents && !IsOwn(address)) {
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
  if (before.scopes != settings.scopes) {
    for (auto& [address, agent] : agents_) {
      if (agent.known) {
        Begin(agent, now);
      }
    }
  }
}

void DirectoryClient::OnRegistration(RegistrationEvent event, const RegistrationView& registration) {
  if (registration.source == RegistrationSource::kAgent || leaving_) {
    return;
  }
  for (auto& [address, agent] : agents_) {
    if (!agent.known) {
      continue;
    }
    switch (event) {
      case RegistrationEvent::kRegistered:
      case RegistrationEvent::kRenewed:
      case RegistrationEvent::kUpdated:
      case RegistrationEvent::kAttributesRemoved:
        agent.queue.Register(registration.url, registration.language);
        break;
      case RegistrationEvent::kDeregistered:
      case RegistrationEvent::kProcessEnded:
      case RegistrationEvent::kFileReplaced:
        agent.queue.Deregister(registration.url, registration.language, registration.scopes);
        break;
      case RegistrationEvent::kExpired:
        if (agent.refreshes.interval() > Seconds(0)) {
          // It may live longer there than here.
          agent.queue.Deregister(registration.url, registration.language, registration.scopes);
        } else {
          agent.queue.Forget(registration.url, registration.language);
        }
        break;
    }
  }
}

// 1. Only what was asked for, what the group may tell, and what comes from an agent that is known counts.
// 2. One that was cut says nothing but that there is an agent, which is asked again by TCP.
// 3. It must speak for the address that it comes from: nobody else can have registrations sent somewhere.
void DirectoryClient::OnAdvertisement(const Message& message, const RequestOrigin& origin, Instant now) {
  const auto& advert = std::get<DaAdvert>(message.body);
  Agent* const agent = Find(origin.address);
  if (leaving_ || !WantsAdvertisement(message, origin, agent)) {
    return;
  }
  if (discovery_.Answers(message.header.xid)) {
    discovery_.AddResponder(std::string(WithoutZone(origin.address)));
  }
  if (agent != nullptr && agent->outstanding &&
      agent->outstanding->message.header.xid == message.header.xid && message.header.xid != 0) {
    agent->outstanding.reset();
  }
  if (advert.error != Error::kOk) {
    return;
  }
  if (message.header.overflow) {
    if (agents_.size() < kMostAgents || agent != nullptr) {
      Agent& asked = agents_[origin.address];
      asked.peer = {origin.address, origin.local_address};
      asked.ask_by_stream = true;
      asked.ask_at = now;
    }
    return;
  }
  const Result<ServiceUrl> url = ParseServiceUrl(advert.url);
  if (url && SameIpAddress(url->host, origin.address) && EqualFolded(url->type, "service:directory-agent")) {
    TakeAdvertisement(advert, origin, now);
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

// 1. Boot timestamp 0: it is going down and gets nothing any more (RFC 2608 section 12.2.2).
// 2. One that is new, or has another boot timestamp, has none of the own services; one that serves other
// scopes has others of them.
void DirectoryClient::TakeAdvertisement(const DaAdvert& advert, const RequestOrigin& origin, Instant now) {
  if (advert.boot_timestamp == 0) {
    if (const Agent* agent = Find(origin.address); agent != nullptr && agent->known) {
      Lose(origin.address, "is going down", now);
    }
    return;
  }
  std::vector<std::string> scopes = SplitStringList(advert.scopes);
  if (scopes.empty() || (Find(origin.address) == nullptr && agents_.size() == kMostAgents)) {
    return;
  }
  Agent& agent = agents_[origin.address];
  agent.peer = {origin.address, origin.local_address};
  agent.ask_at.reset();
  agent.ask_by_stream = false;
  agent.ask_again = Seconds(0);
  agent.refreshes.SetInterval(MinimumRefreshInterval(advert.attributes));
  if (settings_.check_period > Seconds(0)) {
    agent.ask_at = now + settings_.check_period;
  }
  if (agent.known && agent.boot_timestamp == advert.boot_timestamp && agent.scopes == scopes) {
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

// All own services, after a random wait, so that not everybody comes at once (RFC 2608 section 12.2).
void DirectoryClient::Begin(Agent& agent, Instant now) {
  agent.outstanding.reset();
  agent.register_from = now + RandomWait();
  agent.refresh_at = now + kRefresh;
  agent.refreshes.Clear();
  QueueEverything(agent);
}

void DirectoryClient::QueueEverything(Agent& agent) {
  registry_.ForEach([&](const RegistrationView& registration) {
    if (registration.source != RegistrationSource::kAgent) {
      agent.queue.Register(registration.url, registration.language);
    }
  });
}

// An acknowledgment counts from the agent that was asked, for the request that is on its way to it. An agent
// that is busy has not answered yet: the request is sent again.
void DirectoryClient::OnAcknowledgment(const Message& message, const RequestOrigin& origin, Instant now) {
  Agent* const agent = Find(origin.address);
  if (agent == nullptr || !agent->outstanding ||
      agent->outstanding->message.header.xid != message.header.xid) {
    return;
  }
  const Error error = std::get<SrvAck>(message.body).error;
  if (error == Error::kDaBusyNow) {
    return;
  }
  if (const auto* registration = std::get_if<SrvReg>(&agent->outstanding->message.body);
      registration != nullptr && error != Error::kOk) {
    wire_.Tell(true, "directory agent " + origin.address + " refuses " + registration->url.url + ": error " +
                         std::to_string(static_cast<int>(error)));
    agent->refreshes.Forget({registration->url.url, agent->outstanding->message.header.language});
  }
  agent->outstanding.reset();
  Advance(*agent, now);
}

void DirectoryClient::Tick(Instant now) {
  // A random number costs a call of the system, and most ticks have nothing to do with a search.
  const std::optional<Instant> search = discovery_.NextDue();
  if (search && *search <= now && discovery_.TakeDue(settings_, NewXid(), now)) {
    wire_.SendToAll([this](bool loopback) { return discovery_.Request(settings_, loopback); });
  }
  std::vector<std::string> lost;
  for (auto& [address, agent] : agents_) {
    if (agent.outstanding && !Resend(agent, now)) {
      lost.push_back(address);
    } else {
      Advance(agent, now);
    }
  }
  for (const std::string& address : lost) {
    Lose(address, "does not answer", now);
  }
}

// The next thing to do with an agent, when nothing is on its way to it: ask for its advertisement, else tell
// it of the next own service.
void DirectoryClient::Advance(Agent& agent, Instant now) {
  if (agent.outstanding) {
    return;
  }
  if (agent.ask_at && *agent.ask_at <= now) {
    agent.ask_at.reset();
    return Start(agent, AskMessage(), agent.ask_by_stream, now);
  }
  if (!agent.known) {
    return;
  }
  if (agent.refresh_at && *agent.refresh_at <= now) {
    agent.refresh_at = now + kRefresh;
    QueueEverything(agent);
  }
  while (const auto service = agent.refreshes.TakeDue(now)) {
    agent.queue.Register(service->first, service->second);
  }
  while (!agent.outstanding && agent.register_from <= now) {
    const auto job = agent.queue.Next();
    if (!job) {
      return;
    }
    const RefreshLimit::Key service(job->url, job->language);
    if (job->deregister) {
      agent.refreshes.Forget(service);
    } else if (agent.refreshes.Postpone(service, now)) {
      continue;
    }
    if (auto message = MessageFor(agent, *job, now)) {
      if (message->function() == FunctionId::kSrvReg) {
        agent.refreshes.Told(service, now);
      }
      const Result<Bytes> bytes = Encode(*message);
      if (bytes) {
        Start(agent, std::move(*message), bytes->size() > settings_.mtu, now);
      }
    }
  }
}

// False when it has been sent often enough without an answer (RFC 2608 section 12.3).
bool DirectoryClient::Resend(Agent& agent, Instant now) {
  Outstanding& outstanding = *agent.outstanding;
  if (outstanding.next > now) {
    return true;
  }
  if (outstanding.stream || outstanding.tries >= settings_.datagram_waits.size()) {
    return false;
  }
  outstanding.next = now + settings_.datagram_waits[outstanding.tries++];
  Emit(agent, outstanding);
  return true;
}

void DirectoryClient::Start(Agent& agent, Message message, bool stream, Instant now) {
  const Instant wait =
      stream || settings_.datagram_waits.empty() ? Instant(kStreamLimit) : settings_.datagram_waits.front();
  agent.outstanding = Outstanding{std::move(message), stream, 1, now + wait};
  Emit(agent, *agent.outstanding);
}

void DirectoryClient::Emit(const Agent& agent, const Outstanding& outstanding) {
  if (outstanding.stream) {
    wire_.SendByStream(agent.peer, outstanding.message);
  } else {
    wire_.Send(agent.peer, outstanding.message);
  }
}

// 1. What is registered now is registered there with the seconds that it has left, in those of its scopes
// that the agent serves (RFC 2608 section 8.3).
// 2. What has gone is deregistered, unless the URL is registered again; at the end all goes.
std::optional<Message> DirectoryClient::MessageFor(const Agent& agent, const RegistrationQueue::Job& job,
                                                   Instant now) {
  const std::optional<RegistrationView> registered =
      leaving_ ? std::nullopt : registry_.Find(job.url, job.language);
  Message message;
  message.header.xid = NewXid();
  message.header.language = job.language;
  if (registered && registered->source != RegistrationSource::kAgent) {
    const auto scopes = Common(SplitStringList(registered->scopes), agent.scopes);
    if (scopes.empty()) {
      return std::nullopt;
    }
    message.header.fresh = true;
    message.body = SrvReg{.url = {LastingLifetime(*registered, agent.refreshes.interval(), now), job.url, {}},
                          .service_type = std::string(registered->service_type),
                          .scopes = JoinStringList(scopes),
                          .attributes = std::string(registered->attributes),
                          .authentication = {}};
    return message;
  }
  if (!job.deregister || (!leaving_ && registry_.Knows(job.url))) {
    return std::nullopt;
  }
  const auto scopes = Common(SplitStringList(*job.deregister), agent.scopes);
  if (scopes.empty()) {
    return std::nullopt;
  }
  message.body = SrvDereg{.scopes = JoinStringList(scopes), .url = {0, job.url, {}}, .tags = {}};
  return message;
}

Message DirectoryClient::AskMessage() {
  return {.header = {.xid = NewXid(), .language = settings_.language, .extensions = {}},
          .body = SrvRqst{.previous_responders = {},
                          .service_type = "service:directory-agent",
                          .scopes = {},
                          .predicate = {},
                          .spi = {}}};
}

// 1. A configured agent is asked again later, after longer and longer waits.
// 2. Any other is forgotten; a search may find it, or another one.
void DirectoryClient::Lose(const std::string& address, const std::string& reason, Instant now) {
  Agent& agent = agents_.at(address);
  if (agent.known) {
    wire_.Tell(false, "directory agent " + address + " " + reason);
    if (!leaving_ && settings_.active && settings_.interval > Seconds(0)) {
      discovery_.Plan(now + RandomWait());
    }
  }
  if (!agent.configured || leaving_) {
    agents_.erase(address);
    return;
  }
  const Seconds again =
      agent.ask_again == Seconds(0) ? kFirstAskAgain : std::min(agent.ask_again * 2, kLastAskAgain);
  const DirectoryPeer peer = agent.peer;
  agent = Agent();
  agent.peer = peer;
  agent.configured = true;
  agent.ask_again = again;
  agent.ask_at = now + again;
}

std::optional<Instant> DirectoryClient::NextDue(Instant now) const {
  std::optional<Instant> next = discovery_.NextDue();
  for (const auto& [address, agent] : agents_) {
    if (agent.outstanding) {
      next = Earlier(next, agent.outstanding->next);
      continue;
    }
    next = Earlier(next, agent.ask_at);
    if (agent.known) {
      next = Earlier(next, agent.refresh_at);
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
    agent.queue.Clear();
    agent.refreshes.Clear();
    agent.outstanding.reset();
    agent.ask_at.reset();
    agent.refresh_at.reset();
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

Instant DirectoryClient::RandomWait() {
  return Instant(random_() % (settings_.random_bound.count() + 1));
}

// Never 0, which unsolicited advertisements carry (RFC 2608 section 8).
std::uint16_t DirectoryClient::NewXid() {
  return static_cast<std::uint16_t>(1 + random_() % std::numeric_limits<std::uint16_t>::max());
}

}  // namespace slp
