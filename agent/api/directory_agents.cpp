#include "api/directory_agents.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

#include "api/error_mapping.h"
#include "api/host_name_cache.h"
#include "api/local_daemon.h"
#include "api/request_message.h"
#include "api/unicast_exchange.h"
#include "net/addresses.h"
#include "net/interfaces.h"
#include "text/refresh_interval.h"
#include "text/service_url.h"
#include "text/string_list.h"

namespace slp::client {
namespace {

/// What did not answer is not asked again for so long.
constexpr std::chrono::seconds kRejectedFor{60};

/// The daemon of the own host answers at once or, where it is none of ours, not at all.
constexpr std::chrono::milliseconds kDaemonWait{250};

RequestContext WithWaits(const RequestContext& context, const RequestSettings::Waits& waits) {
  RequestContext changed = context;
  changed.settings.unicast = waits;
  return changed;
}

void Reject(const asio::ip::address& address, const RequestContext& context) {
  DirectoryAgentCache::Instance().Reject(address, context.settings.port,
                                         context.environment.clock() + kRejectedFor);
}

bool Rejected(const asio::ip::address& address, const RequestContext& context) {
  return DirectoryAgentCache::Instance().Rejected(address, context.settings.port,
                                                  context.environment.clock());
}

std::optional<asio::ip::address> AddressIn(const std::string& url, const RequestContext& context) {
  const Result<ServiceUrl> parsed = ParseServiceUrl(url);
  return ParseUsableAddress(parsed ? parsed->host : std::string(), context.settings.use_ipv6);
}

/// Whether an advertisement from `sender` speaks of `sender` itself; nobody knows another host's zones.
bool IsSender(const std::optional<asio::ip::address>& advertised, const asio::ip::address& sender) {
  return advertised && WithoutZone(*advertised) == WithoutZone(sender);
}

void AddScope(std::vector<KnownAgent>& agents, const asio::ip::address& address,
              const std::vector<std::string>& scopes) {
  const auto known = std::find_if(agents.begin(), agents.end(),
                                  [&](const KnownAgent& agent) { return agent.address == address; });
  if (known == agents.end()) {
    agents.push_back({address, scopes});
  } else {
    known->scopes = ListUnion(std::move(known->scopes), scopes);
  }
}

bool Cover(const std::vector<KnownAgent>& agents, const std::vector<std::string>& scopes) {
  std::vector<std::string> served;
  for (const KnownAgent& agent : agents) {
    served = ListUnion(std::move(served), agent.scopes);
  }
  return ListContainsAll(served, scopes);
}

std::vector<std::string> Without(std::vector<std::string> scopes, const std::vector<std::string>& served) {
  std::erase_if(scopes, [&](const std::string& scope) { return ListContains(served, scope); });
  return scopes;
}

/// What the agent says of itself when it is asked (RFC 2608 section 12) and answers by the limit.
std::optional<KnownAgent> AskForItself(const asio::ip::address& address, const RequestContext& context,
                                       std::chrono::milliseconds limit) {
  RequestSettings::Waits waits = context.settings.directory_agents.discovery;
  waits.maximum = std::min(waits.maximum, limit);
  const Exchange exchange =
      ExchangeWith(address, DirectoryAgentRequest({}, context), WithWaits(context, waits));
  std::optional<KnownAgent> agent =
      exchange.reply ? Remember(*exchange.reply, address, context) : std::nullopt;
  if (!agent) {
    Reject(address, context);
  }
  return agent;
}

/// The time for the next of so many questions, so that the silence of one does not leave the others unasked.
std::chrono::milliseconds ShareOf(const Deadline& deadline, std::size_t questions) {
  return deadline.Remaining() / static_cast<std::chrono::milliseconds::rep>(questions);
}

/// Asks agents for themselves one after the other, until `take` returns false or the time is over, of which
/// something is left for the questions that come `afterwards`.
void AskInTurn(const std::vector<asio::ip::address>& addresses, std::size_t afterwards,
               const RequestContext& context, const Deadline& deadline,
               const std::function<bool(const KnownAgent&)>& take) {
  std::size_t left = addresses.size() + afterwards;
  for (const asio::ip::address& address : addresses) {
    const std::chrono::milliseconds share = ShareOf(deadline, left--);
    if (share == std::chrono::milliseconds(0)) {
      return;
    }
    const std::optional<KnownAgent> agent = AskForItself(address, context, share);
    if (agent && !take(*agent)) {
      return;
    }
  }
}

std::vector<KnownAgent> CachedAgents(const RequestContext& context) {
  return DirectoryAgentCache::Instance().Agents(context.settings.port, context.environment.clock());
}

std::optional<KnownAgent> CachedAgent(const asio::ip::address& address, const RequestContext& context) {
  for (KnownAgent& agent : CachedAgents(context)) {
    if (agent.address == address) {
      return std::move(agent);
    }
  }
  return std::nullopt;
}

/// Looks for the agents of net.slp.DAAddresses that are there. Each tells its scopes once.
class ConfiguredAgents {
 public:
  ConfiguredAgents(const std::vector<std::string>& scopes, Configured configured,
                   const RequestContext& context, const Deadline& deadline)
      : scopes_(scopes), configured_(configured), context_(context), deadline_(deadline) {}

  /// Names come after the addresses, and are not looked up when those are enough. A name server takes no
  /// longer than a search for directory agents may, and leaves time for the hosts that it names.
  std::vector<KnownAgent> Find() {
    const RequestSettings::DirectoryAgents& settings = context_.settings.directory_agents;
    AddThoseAt(settings.configured, settings.names.empty() ? 0 : 1);
    if (!settings.names.empty() && !Enough()) {
      const auto wait = std::min(settings.discovery.maximum, ShareOf(deadline_, 2));
      std::vector<asio::ip::address> others = HostNameCache::Instance().Addresses(settings.names, wait);
      std::erase_if(others, [&](const asio::ip::address& address) {
        return std::find(settings.configured.begin(), settings.configured.end(), address) !=
               settings.configured.end();
      });
      AddThoseAt(others, 0);
    }
    return std::move(agents_);
  }

 private:
  bool Enough() const { return configured_ == Configured::kEnough && Cover(agents_, scopes_); }

  /// First those who have told about themselves before; so one that is silent is asked only where it might be
  /// needed.
  void AddThoseAt(const std::vector<asio::ip::address>& addresses, std::size_t afterwards) {
    std::vector<asio::ip::address> unknown;
    for (const asio::ip::address& address : addresses) {
      if (auto agent = CachedAgent(address, context_)) {
        agents_.push_back(std::move(*agent));
      } else if (!Rejected(address, context_)) {
        unknown.push_back(address);
      }
    }
    if (!Enough()) {
      AskInTurn(unknown, afterwards, context_, deadline_, [&](const KnownAgent& agent) {
        agents_.push_back(agent);
        return !Enough();
      });
    }
  }

  const std::vector<std::string>& scopes_;
  const Configured configured_;
  const RequestContext& context_;
  const Deadline& deadline_;
  std::vector<KnownAgent> agents_;
};

/// Asks the daemon of this host, scope by scope, so that its answers tell who serves which. None when no
/// daemon answers.
std::optional<std::vector<KnownAgent>> AgentsOfDaemon(const std::vector<std::string>& scopes,
                                                      const RequestContext& context) {
  const RequestContext impatient = WithWaits(context, {{kDaemonWait}, kDaemonWait});
  const std::vector<Interface> links = context.settings.use_ipv6
                                           ? EnumerateInterfaces(true).value_or(std::vector<Interface>())
                                           : std::vector<Interface>();
  LocalDaemonAddresses addresses(context.settings);
  while (const auto next = addresses.Next()) {
    const asio::ip::address& address = *next;
    if (Rejected(address, context)) {
      continue;
    }
    std::vector<KnownAgent> agents;
    bool answered = false;
    for (const std::string& scope : scopes) {
      const Exchange exchange = ExchangeWith(address, DirectoryAgentRequest(scope, context), impatient);
      if (exchange.end == Exchange::End::kTimedOut) {
        Reject(address, context);
      }
      if (exchange.end != Exchange::End::kReplied) {
        break;
      }
      answered = true;
      if (const auto* reply = std::get_if<SrvRply>(&exchange.reply->body)) {
        for (const UrlEntry& entry : reply->urls) {
          if (const auto agent = AddressIn(entry.url, context)) {
            AddScope(agents, OnSomeLink(links, *agent), {scope});
          }
        }
      } else if (ReplyError(*exchange.reply) == Error::kOk) {
        AddScope(agents, address, SplitStringList(std::get<DaAdvert>(exchange.reply->body).scopes));
      }
    }
    if (answered) {
      return agents;
    }
  }
  return std::nullopt;
}

}  // namespace

Message DirectoryAgentRequest(const std::string& scopes, const RequestContext& context) {
  return NewRequest(context, SrvRqst{.previous_responders = {},
                                     .service_type = std::string(kDirectoryAgentType),
                                     .scopes = scopes,
                                     .predicate = {},
                                     .spi = {}});
}

std::optional<KnownAgent> Remember(const Message& advertisement, const asio::ip::address& sender,
                                   const RequestContext& context) {
  const auto* advert = std::get_if<DaAdvert>(&advertisement.body);
  if (advert == nullptr || advert->error != Error::kOk || advert->boot_timestamp == 0 ||
      !IsSender(AddressIn(advert->url, context), sender)) {
    return std::nullopt;
  }
  KnownAgent agent{sender, SplitStringList(advert->scopes), AdvertisedRefreshInterval(advert->attributes)};
  const auto lasts = std::max(context.settings.directory_agents.interval, std::chrono::seconds(kRejectedFor));
  const auto now = context.environment.clock();
  DirectoryAgentCache::Instance().Add(agent, context.settings.port, now, now + lasts);
  return agent;
}

Deadline TimeForQuestions(const RequestContext& context) {
  return {context.environment.clock, context.settings.unicast.maximum};
}

DirectoryKnowledge FindDirectoryAgents(const std::vector<std::string>& scopes, Configured configured,
                                       const RequestContext& context, const Deadline& deadline) {
  DirectoryKnowledge knowledge;
  knowledge.agents = ConfiguredAgents(scopes, configured, context, deadline).Find();
  knowledge.enough = Cover(knowledge.agents, scopes);
  if (knowledge.enough || !context.settings.directory_agents.wanted) {
    return knowledge;
  }
  if (const auto agents = AgentsOfDaemon(scopes, context)) {
    for (const KnownAgent& agent : *agents) {
      AddScope(knowledge.agents, agent.address, agent.scopes);
    }
  } else {
    DirectoryAgentCache& cache = DirectoryAgentCache::Instance();
    const auto now = context.environment.clock();
    for (const KnownAgent& agent : CachedAgents(context)) {
      AddScope(knowledge.agents, agent.address, agent.scopes);
    }
    knowledge.search =
        context.settings.directory_agents.searched && !Cover(knowledge.agents, scopes) &&
        cache.TakeSearch(context.settings.port, now, now + context.settings.directory_agents.interval);
  }
  std::erase_if(knowledge.agents, [&](const KnownAgent& agent) { return Rejected(agent.address, context); });
  knowledge.enough = Cover(knowledge.agents, scopes);
  return knowledge;
}

void Gather(std::vector<KnownAgent>& found, const Message& advertisement, const asio::ip::address& sender,
            const RequestContext& context) {
  const auto agent = Remember(advertisement, sender, context);
  if (!agent) {
    return;
  }
  const auto before = std::find_if(found.begin(), found.end(),
                                   [&](const KnownAgent& other) { return other.address == agent->address; });
  if (before != found.end()) {
    *before = *agent;
  } else if (found.size() < DirectoryAgentCache::kMostAgents) {
    found.push_back(*agent);
  }
}

std::vector<KnownAgent> SearchDirectoryAgents(const RequestContext& context) {
  std::vector<KnownAgent> found;
  const SenderSink gather = [&](const Message& reply, const asio::ip::address& sender) {
    Gather(found, reply, sender, context);
    return true;
  };
  static_cast<void>(Converge(DirectoryAgentRequest({}, context), context, gather));
  return found;
}

std::chrono::seconds LongestIntervalOf(const std::vector<KnownAgent>& agents, const RequestContext& context,
                                       const Deadline& deadline) {
  std::chrono::seconds longest{0};
  const auto take = [&](const KnownAgent& agent) {
    longest = std::max(longest, agent.refresh_interval.value_or(std::chrono::seconds(0)));
    return true;
  };
  std::vector<asio::ip::address> unknown;
  for (const KnownAgent& agent : agents) {
    if (agent.refresh_interval) {
      take(agent);
    } else if (const auto cached = CachedAgent(agent.address, context)) {
      take(*cached);
    } else if (!Rejected(agent.address, context)) {
      unknown.push_back(agent.address);
    }
  }
  AskInTurn(unknown, 0, context, deadline, take);
  return longest;
}

// 1. Only agents that serve all scopes together can stand for everyone.
// 2. Of those that are left, the one that serves the most of what is not asked for yet is next.
// 3. One that does not answer, or no longer serves the scopes, is left out from now on; another one may take
//    its place (RFC 2608 section 12.3).
std::optional<SLPError> AskDirectoryAgents(std::vector<KnownAgent> agents,
                                           const std::vector<std::string>& scopes, const Message& request,
                                           const RequestContext& context, const ReplySink& sink) {
  std::vector<std::string> missing = scopes;
  std::optional<SLPError> error;
  while (!missing.empty()) {
    if (!Cover(agents, missing)) {
      return std::nullopt;
    }
    const auto next =
        std::min_element(agents.begin(), agents.end(), [&](const KnownAgent& one, const KnownAgent& other) {
          return Without(missing, one.scopes).size() < Without(missing, other.scopes).size();
        });
    const KnownAgent agent = *next;
    agents.erase(next);
    const Exchange exchange =
        ExchangeWith(agent.address, request, WithWaits(context, context.settings.directory_agents.requests));
    const Error answer = exchange.reply ? ReplyError(*exchange.reply) : Error::kInternalError;
    if (exchange.end != Exchange::End::kReplied || answer == Error::kScopeNotSupported) {
      Reject(agent.address, context);
      continue;
    }
    missing = Without(std::move(missing), agent.scopes);
    if (answer != Error::kOk) {
      error = error.value_or(ToSlpError(answer));
    } else {
      error = SLP_OK;
      if (!sink(*exchange.reply)) {
        break;
      }
    }
  }
  return error;
}

}  // namespace slp::client
