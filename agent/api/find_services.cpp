#include <set>

#include "api/reply_text.h"
#include "api/request_message.h"
#include "api/search.h"
#include "api/searches.h"
#include "text/predicate.h"
#include "text/service_type.h"

namespace slp::client {
namespace {

/// The services that a reply names. An agent's own advertisement names the agent, and says nothing of a
/// lifetime.
std::vector<UrlEntry> UrlsOf(const Message& reply) {
  switch (reply.function()) {
    case FunctionId::kSrvRply:
      return std::get<SrvRply>(reply.body).urls;
    case FunctionId::kDaAdvert:
      return {{.lifetime = SLP_LIFETIME_MAXIMUM,
               .url = std::get<DaAdvert>(reply.body).url,
               .authentication = {}}};
    case FunctionId::kSaAdvert:
      return {{.lifetime = SLP_LIFETIME_MAXIMUM,
               .url = std::get<SaAdvert>(reply.body).url,
               .authentication = {}}};
    default:
      return {};
  }
}

}  // namespace

SLPError FindServices(const ServiceQuery& query, const RequestContext& context, const Deliver& deliver) {
  if (!ParseServiceType(query.type)) {
    return SLP_PARAMETER_BAD;
  }
  ResultReport report(deliver, context.settings.maximum_results);
  if (!Predicate::Parse(query.predicate)) {
    return report.Finish(SLP_PARSE_ERROR);
  }
  const Message request =
      NewRequest(context, SrvRqst{.previous_responders = {},
                                  .service_type = query.type,
                                  .scopes = query.scopes.empty() ? context.settings.scopes : query.scopes,
                                  .predicate = query.predicate,
                                  .spi = {}});
  std::set<std::string> known;
  return report.Finish(RunSearch(request, context, [&](const Message& reply) {
    for (const UrlEntry& entry : UrlsOf(reply)) {
      if (IsSaneUrl(entry.url) && known.insert(entry.url).second &&
          !report.Add(entry.url.c_str(), entry.lifetime)) {
        return false;
      }
    }
    return true;
  }));
}

}  // namespace slp::client
