#include <algorithm>

#include "api/reply_text.h"
#include "api/request_message.h"
#include "api/search.h"
#include "api/searches.h"
#include "text/fold.h"
#include "text/string_list.h"

namespace slp::client {
namespace {

constexpr std::string_view kAllAuthorities = "*";
constexpr std::string_view kDefaultAuthority = "IANA";

}  // namespace

SLPError FindServiceTypes(const TypeQuery& query, const RequestContext& context, const Deliver& deliver) {
  if (EqualFolded(query.naming_authority, kDefaultAuthority)) {
    return SLP_PARAMETER_BAD;
  }
  const Message request = NewRequest(
      context, SrvTypeRqst{.previous_responders = {},
                           .naming_authority = query.naming_authority == kAllAuthorities
                                                   ? std::nullopt
                                                   : std::optional(query.naming_authority),
                           .scopes = query.scopes.empty() ? context.settings.scopes : query.scopes});
  ResultReport report(deliver, 1);
  std::vector<std::string> types;
  const auto maximum = static_cast<std::size_t>(context.settings.maximum_results);
  const SLPError error = RunSearch(request, context, [&](const Message& reply) {
    const std::string& list = std::get<SrvTypeRply>(reply.body).types;
    if (IsWholeText(list)) {
      types = ListUnion(std::move(types), SplitStringList(list));
    }
    return types.size() < maximum;
  });
  types.resize(std::min(types.size(), maximum));
  if (!types.empty()) {
    report.Add(JoinStringList(types).c_str(), 0);
  }
  return report.Finish(error);
}

}  // namespace slp::client
