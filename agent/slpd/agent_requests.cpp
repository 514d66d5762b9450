// Service requests for the agents themselves (RFC 2608 sections 8.5 and 8.6).
#include <string>
#include <utility>
#include <vector>

#include "slpd/request_context.h"
#include "slpd/request_lists.h"
#include "text/escape.h"
#include "text/fold.h"
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

std::string ServiceAgentUrl(const RequestContext& context) {
  std::string address = context.origin.local_address;
  if (address.empty() && !context.settings.own_addresses.empty()) {
    address = context.settings.own_addresses.front();
  }
  return "service:service-agent://" + address;
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
  if (!parsed || !predicate->Matches(*parsed)) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kOk);
  }
  Message advert{
      Header{.language = context.header.language, .extensions = {}},
      SaAdvert{ServiceAgentUrl(context), JoinStringList(context.settings.scopes), std::move(attributes), {}}};
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

// Only a directory agent answers with an advertisement; a service agent that is asked by unicast says that it
// knows of none (RFC 2608 section 8.2).
Answer AnswerDirectoryAgentRequest(const RequestContext&, const SrvRqst&) {
  return ErrorAnswer(FunctionId::kSrvRqst, Error::kOk);
}

}  // namespace slp
