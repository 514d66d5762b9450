#include <set>

#include "api/reply_text.h"
#include "api/request_message.h"
#include "api/search.h"
#include "api/searches.h"
#include "text/service_type.h"
#include "text/service_url.h"

namespace slp::client {

SLPError FindAttributes(const AttributeQuery& query, const RequestContext& context, const Deliver& deliver) {
  const bool by_url = ParseServiceUrl(query.url_or_type).ok();
  if (!by_url && !ParseServiceType(query.url_or_type)) {
    return SLP_PARAMETER_BAD;
  }
  const Message request =
      NewRequest(context, AttrRqst{.previous_responders = {},
                                   .url = query.url_or_type,
                                   .scopes = query.scopes.empty() ? context.settings.scopes : query.scopes,
                                   .tags = query.tags,
                                   .spi = {}});
  ResultReport report(deliver, context.settings.maximum_results);
  std::set<std::string> known;
  bool empty_list = false;
  const SLPError error = RunSearch(request, context, [&](const Message& reply) {
    const std::string& attributes = std::get<AttrRply>(reply.body).attributes;
    if (attributes.empty() || !IsWholeText(attributes)) {
      empty_list = empty_list || attributes.empty();
      return true;
    }
    const bool fresh = known.insert(attributes).second;
    return (!fresh || report.Add(attributes.c_str(), 0)) && !by_url;
  });
  // An agent that has the service but none of the attributes says so; another one may have had them.
  if (known.empty() && empty_list) {
    report.Add("", 0);
  }
  return report.Finish(error);
}

}  // namespace slp::client
