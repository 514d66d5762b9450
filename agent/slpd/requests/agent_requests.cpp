// Service requests for the agents themselves (RFC 2608 sections 8.5 and 8.6).
#include <string>
#include <utility>
#include <vector>

#include "slpd/directory/advertisement.h"
#include "slpd/requests/request_context.h"
#include "slpd/requests/request_lists.h"
#include "text/escape.h"
#include "text/fold.h"
#include "text/ip_address.h"
#include "text/string_list.h"
#include "wire/codec.h"

namespace slp {
namespace {

/// The attribute list with which this agent describes itself: its own and the types that it has services of.
std::string ServiceAgentAttributes(const RequestContext& context) {
  std::vector<std::string> types = context.registry.FindTypes(context.settings.scopes, std::nullopt);
  std::string attributes = context.settings.service_agent_attributes;
  if (types.empty()) {
    return attributes;
  }
  for (std::string& type : types) {
    type = Escape(type);
  }
  AttributeList list;
  if (Result<AttributeList> own = AttributeList::Parse(attributes)) {
    list = std::move(own).value();
  }
  if (Result<AttributeList> services = AttributeList::Parse("(service-type=" + JoinStringList(types) + ')')) {
    list.Merge(*services);
  }
  return list.ToString();
}

std::string AdvertisedAddress(const RequestContext& context) {
  const std::vector<std::string>& own = context.settings.own_addresses;
  return !context.origin.local_address.empty() || own.empty() ? context.origin.local_address : own.front();
}

SrvRply KnownDirectoryAgents(const RequestContext& context, const SrvRqst& request) {
  SrvRply reply;
  if (context.known_agents) {
    for (std::string& url : context.known_agents(SplitStringList(request.scopes))) {
      reply.urls.push_back({.lifetime = kMaximumLifetime, .url = std::move(url), .authentication = {}});
    }
  }
  return reply;
}

}  // namespace

// 1. Scopes may be left out here, but if there are some, one must be served (RFC 2608 section 11.2).
// 2. The predicate is compared with the agent's own attributes; if they don't satisfy it, there is no
// advertisement.
// 3. An advertisement cannot be cut: one that does not fit leaves the attributes out, which it may.
Answer AnswerServiceAgentRequest(const RequestContext& context, const SrvRqst& request) {
  const Result<Predicate> predicate = Predicate::Parse(request.predicate);
  if (!predicate) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kParseError);
  }
  if (!SplitStringList(request.scopes).empty() &&
      ServedScopes(request.scopes, context.settings.scopes).empty()) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kScopeNotSupported);
  }
  if (!Trim(request.spi).empty()) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kAuthenticationUnknown);
  }

  std::string attributes = ServiceAgentAttributes(context);
  const Result<AttributeList> parsed = AttributeList::Parse(attributes);
  const bool matches = parsed && predicate->Matches(*parsed, context.effort);
  if (context.effort.exhausted()) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kInternalError);
  }
  if (!matches) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kOk);
  }
  Message advert{Header{.language = context.header.language, .extensions = {}},
                 SaAdvert{"service:service-agent://" + UrlHost(AdvertisedAddress(context)),
                          JoinStringList(context.settings.scopes),
                          std::move(attributes),
                          {}}};
  const auto fits = [&] {
    const Result<Bytes> bytes = Encode(advert);
    return bytes && bytes->size() <= context.limit;
  };
  if (!fits()) {
    std::get<SaAdvert>(advert.body).attributes.clear();
    if (!fits()) {
      return Silence{"no room for the advertisement"};
    }
  }
  return Reply{std::move(advert.body)};
}

// 1. Only a directory agent answers with an advertisement. A service agent that is asked by unicast answers
// as for any other service (RFC 2608 section 8.2): with the directory agents that it knows of where a program
// of its own host asks, which then need not look for them itself, else with none.
// 2. In its first second other hosts don't hear of it; its own host's programs, which register nothing by
// boot timestamps, do.
// 3. What is wrong with a request is told in the advertisement's error code (section 8.5). Scopes may be left
// out, but if there are some, one must be served (sections 11.2 and 12.1).
// 4. The predicate is compared with the agent's attributes; where they don't satisfy it, there is no
// advertisement.
Answer AnswerDirectoryAgentRequest(const RequestContext& context, const SrvRqst& request) {
  const AgentSettings& settings = context.settings;
  if (!settings.directory_agent) {
    return Reply{context.origin.own_host && !context.multicast ? KnownDirectoryAgents(context, request)
                                                               : SrvRply()};
  }
  if (context.now < settings.announced_from && !(context.origin.own_host && !context.multicast)) {
    return Silence{"this start of the directory agent is not yet told from an earlier one"};
  }
  DaAdvert advert = MakeAdvertisement(settings, AdvertisedAddress(context));
  const Result<Predicate> predicate = Predicate::Parse(request.predicate);
  const Result<AttributeList> attributes = AttributeList::Parse(advert.attributes);
  if (!predicate || !attributes) {
    advert.error = Error::kParseError;
  } else if (!SplitStringList(request.scopes).empty() &&
             ServedScopes(request.scopes, settings.scopes).empty()) {
    advert.error = Error::kScopeNotSupported;
  } else if (!Trim(request.spi).empty()) {
    advert.error = Error::kAuthenticationUnknown;
  } else {
    const bool matches = predicate->Matches(*attributes, context.effort);
    if (context.effort.exhausted()) {
      advert.error = Error::kInternalError;
    } else if (!matches) {
      return ErrorAnswer(FunctionId::kSrvRqst, Error::kOk);
    }
  }
  return Reply{std::move(advert)};
}

}  // namespace slp
