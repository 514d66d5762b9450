#include "api/directory_agents.h"

#include <algorithm>
#include <utility>

#include "api/error_mapping.h"
#include "api/local_daemon.h"
#include "api/request_message.h"
#include "api/unicast_exchange.h"
#include "net/addresses.h"
#include "net/interfaces.h"
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

/// The configured agents that are there. Each tells its scopes once (RFC 2608 section 12).
std::vector<KnownAgent> ConfiguredAgents(const RequestContext& context) {
  const std::vector<KnownAgent> cached =
      DirectoryAgentCache::Instance().Agents(context.settings.port, context.environment.clock());
  std::vector<KnownAgent> agents;
  for (const asio::ip::address& address : context.settings.directory_agents.configured) {
    const auto known = std::find_if(cached.begin(), cached.end(),
                                    [&](const KnownAgent& agent) { return agent.address == address; });
    if (known != cached.end()) {
      agents.push_back(*known);
    } else if (!Rejected(address, context)) {
      const Exchange exchange = ExchangeWith(address, DirectoryAgentRequest({}, context),
                                             WithWaits(context, context.settings.directory_agents.discovery));
      const auto agent = exchange.reply ? Remember(*exchange.reply, address, context) : std::nullopt;
      agent ? agents.push_back(*agent) : Reject(address, context);
    }
  }
  return agents;
}

/// Asks the daemon of this host, scope by scope, so that its answers tell who serves which. None when no
/// daemon answers.
std::optional<std::vector<KnownAgent>> AgentsOfDaemon(const std::vector<std::string>& scopes,
                                                      const RequestContext& context) {
  const RequestContext impatient = WithWaits(context, {{kDaemonWait}, kDaemonWait});
  const std::vector<Interface> links =
      context.settings.use_ipv6 ? EnumerateInterfaces(true) : std::vector<Interface>();
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
  KnownAgent agent{sender, SplitStringList(advert->scopes)};
  const auto lasts = std::max(context.settings.directory_agents.interval, std::chrono::seconds(kRejectedFor));
  DirectoryAgentCache::Instance().Add(agent, context.settings.port, context.environment.clock() + lasts);
  return agent;
}

DirectoryKnowledge FindDirectoryAgents(const std::vector<std::string>& scopes,
                                       const RequestContext& context) {
  DirectoryKnowledge knowledge;
  knowledge.agents = ConfiguredAgents(context);
  if (Cover(knowledge.agents, scopes) || !context.settings.directory_agents.wanted) {
    return knowledge;
  }
  if (const auto agents = AgentsOfDaemon(scopes, context)) {
    for (const KnownAgent& agent : *agents) {
      AddScope(knowledge.agents, agent.address, agent.scopes);
    }
  } else {
    DirectoryAgentCache& cache = DirectoryAgentCache::Instance();
    const auto now = context.environment.clock();
    for (const KnownAgent& agent : cache.Agents(context.settings.port, now)) {
      AddScope(knowledge.agents, agent.address, agent.scopes);
    }
    knowledge.search =
        context.settings.directory_agents.searched && !Cover(knowledge.agents, scopes) &&
        cache.TakeSearch(context.settings.port, now, now + context.settings.directory_agents.interval);
  }
  std::erase_if(knowledge.agents, [&](const KnownAgent& agent) { return Rejected(agent.address, context); });
  return knowledge;
}

// 1. Only agents that serve all scopes together can stand for everyone.
// 2. Of those that are left, the one that serves the most of what is not asked for yet is next.
// 3. One that does not answer, or no longer serves the scopes, is left out from now on; another one may take
// its
//    place (RFC 2608 section 12.3).
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
