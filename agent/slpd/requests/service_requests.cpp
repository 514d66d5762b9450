// Service requests: who offers a service of this type (RFC 2608 sections 8.1 and 8.2).
#include <string>
#include <utility>

#include "slpd/requests/request_context.h"
#include "slpd/requests/request_lists.h"
#include "text/fold.h"
#include "text/ip_address.h"
#include "text/service_url.h"
#include "wire/codec.h"

namespace slp {
namespace {

/// A URL entry's reserved byte, lifetime, length and count of authentication blocks (RFC 2608 section 4.3).
constexpr std::size_t kUrlEntryOverhead = 6;

/// Without a predicate a type is found in all languages.
Result<ServiceQuery> ParseQuery(const RequestContext& context, const SrvRqst& request) {
  Result<ServiceType> type = ParseServiceType(request.service_type);
  Result<Predicate> predicate = Predicate::Parse(request.predicate);
  if (!type || !predicate) {
    return Error::kParseError;
  }
  return ServiceQuery{std::move(*type), ServedScopes(request.scopes, context.settings.scopes),
                      context.header.language, std::move(*predicate)};
}

bool NamesAddressOfLink(std::string_view url) {
  const Result<ServiceUrl> parsed = ParseServiceUrl(url);
  const auto address = parsed ? ParseIpv6Address(parsed->host) : std::nullopt;
  return address && (*address)[0] == 0xFE && ((*address)[1] & 0xC0) == 0x80;
}

}  // namespace

// 1. A request for the agents themselves has its own rules.
// 2. Type and predicate must parse; one scope must be served; a signature cannot be given.
// 3. Who may stand on another link is told of no address that means something on this one alone (RFC 3111
//    section 4.2.3).
// 4. URL entries up to one more than fits: which of them fit is the encoder's to say, that there were more is
// told by
//    the overflow flag.
Answer AnswerServiceRequest(const RequestContext& context, const SrvRqst& request) {
  if (EqualFolded(request.service_type, "service:service-agent")) {
    return AnswerServiceAgentRequest(context, request);
  }
  if (EqualFolded(request.service_type, "service:directory-agent")) {
    return AnswerDirectoryAgentRequest(context, request);
  }

  const Result<ServiceQuery> query = ParseQuery(context, request);
  if (!query) {
    return ErrorAnswer(FunctionId::kSrvRqst, query.error());
  }
  if (query->scopes.empty()) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kScopeNotSupported);
  }
  if (!Trim(request.spi).empty()) {
    return ErrorAnswer(FunctionId::kSrvRqst, Error::kAuthenticationUnknown);
  }

  SrvRply reply;
  bool more = false;
  std::size_t size = 0;
  const auto add = [&](std::string_view url, std::uint16_t lifetime) {
    if (context.origin.beyond_link && NamesAddressOfLink(url)) {
      return true;
    }
    more = reply.urls.size() == kMaximumUrlEntries;
    if (more || size > context.limit) {
      return false;
    }
    reply.urls.push_back(UrlEntry{lifetime, std::string(url), {}});
    size += kUrlEntryOverhead + url.size();
    return true;
  };
  const Error error = context.registry.FindServices(*query, context.now, context.effort, add);
  if (error != Error::kOk) {
    return ErrorAnswer(FunctionId::kSrvRqst, error);
  }
  return Reply{std::move(reply), more};
}

}  // namespace slp
