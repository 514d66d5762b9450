// What DirectoryClient tells directory agents of the own services, and what they say to it.
#include <string>
#include <utility>

#include "slpd/directory/directory_client.h"
#include "slpd/directory/registration_message.h"
#include "wire/codec.h"

namespace slp {
namespace {

/// Whether it may live on when what an agent was told has ended.
bool NeedsRenewal(const RegistrationView& registration) {
  return !registration.expiry || Seconds(registration.lifetime) > kLongestToldLifetime;
}

/// Whether an agent that refuses a registration so may take it later: whose it was until its end, there is no
/// room for it, or it comes too soon.
bool MayHeal(Error error) {
  return error == Error::kInvalidRegistration || error == Error::kDaBusyNow ||
         error == Error::kRefreshRejected || error == Error::kInternalError;
}

}  // namespace

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
          agent.renewals.Forget({std::string(registration.url), std::string(registration.language)});
        }
        break;
    }
  }
}

// All own services, after a random wait, so that not everybody comes at once (RFC 2608 section 12.2).
void DirectoryClient::Begin(Agent& agent, Instant now) {
  agent.outstanding.reset();
  agent.register_from = now + RandomWait();
  agent.refreshes.Clear();
  agent.renewals.Start(now);
  QueueEverything(agent);
}

void DirectoryClient::QueueEverything(Agent& agent) {
  registry_.ForEach([&](const RegistrationView& registration) {
    if (registration.source != RegistrationSource::kAgent) {
      agent.queue.Register(registration.url, registration.language);
    }
  });
}

void DirectoryClient::QueueRenewals(Agent& agent, Instant now) {
  registry_.ForEach([&](const RegistrationView& registration) {
    if (registration.source != RegistrationSource::kAgent && NeedsRenewal(registration)) {
      const Instant wait(random_() % Instant(kRenewalSpread).count());
      agent.renewals.Plan({std::string(registration.url), std::string(registration.language)}, now + wait);
    }
  });
}

// An acknowledgment counts from the agent that was asked, for the request that is on its way to it. An agent
// that is too busy to deregister has not answered yet: the request is sent again.
void DirectoryClient::OnAcknowledgment(const Message& message, const RequestOrigin& origin, Instant now) {
  Agent* const agent = Find(origin.address);
  if (agent == nullptr || !agent->outstanding ||
      agent->outstanding->message.header.xid != message.header.xid) {
    return;
  }
  agent->answered_at = now;
  const Error error = std::get<SrvAck>(message.body).error;
  if (const auto* registration = std::get_if<SrvReg>(&agent->outstanding->message.body)) {
    TakeAnswer(*agent, *registration, error, now);
  } else if (error == Error::kDaBusyNow) {
    return;
  }
  agent->outstanding.reset();
  Advance(*agent, now);
}

// What may be taken later is registered again after a while, and told once, not each time.
void DirectoryClient::TakeAnswer(Agent& agent, const SrvReg& registration, Error error, Instant now) {
  const RefreshLimit::Key service(registration.url.url, agent.outstanding->message.header.language);
  const std::string who = "directory agent " + agent.peer.address;
  if (error == Error::kOk) {
    if (agent.renewals.Taken(service)) {
      wire_.Tell(false, who + " takes " + service.first + " now");
    }
    return;
  }
  agent.refreshes.Forget(service);
  const std::string refusal =
      who + " refuses " + service.first + ": error " + std::to_string(static_cast<int>(error));
  if (!MayHeal(error)) {
    agent.renewals.Forget(service);
    wire_.Tell(true, refusal);
  } else if (agent.renewals.Refused(service, now)) {
    wire_.Tell(true, refusal + "; trying until it takes it" +
                         (error == Error::kInvalidRegistration
                              ? ", which it may not before what another address has registered ends"
                              : ""));
  }
}

// Everything that is to be told again joins what is to be told; then the next service's turn has come.
void DirectoryClient::TellNext(Agent& agent, Instant now) {
  if (agent.renewals.TakeRound(now)) {
    QueueRenewals(agent, now);
  }
  while (const auto service = agent.renewals.TakeDue(now)) {
    agent.queue.Register(service->first, service->second);
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
    auto message =
        RegistrationMessage(registry_, *job, {agent.scopes, agent.refreshes.interval()}, leaving_, now);
    const bool registers = message && message->function() == FunctionId::kSrvReg;
    if (!registers) {
      agent.refreshes.Forget(service);
      agent.renewals.Forget(service);
    } else if (agent.refreshes.Postpone(service, now)) {
      continue;
    }
    if (message) {
      message->header.xid = NewXid();
      if (registers) {
        agent.refreshes.Told(service, now);
      }
      const Result<Bytes> bytes = Encode(*message);
      if (bytes) {
        Start(agent, std::move(*message), bytes->size() > settings_.mtu, now);
      }
    }
  }
}

}  // namespace slp
