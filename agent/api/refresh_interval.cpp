#include "api/refresh_interval.h"

#include <algorithm>
#include <vector>

#include "api/directory_agents.h"
#include "api/guard.h"
#include "api/handle_call.h"
#include "api/request_context.h"
#include "text/string_list.h"

namespace slp::client {

std::chrono::seconds LongestRefreshInterval(const RequestContext& context) {
  const std::vector<std::string> scopes = ListUnion({}, SplitStringList(context.settings.scopes));
  const Deadline deadline = TimeForQuestions(context);
  DirectoryKnowledge known = FindDirectoryAgents(scopes, Configured::kAll, context, deadline);
  if (known.search) {
    const std::vector<KnownAgent> found = SearchDirectoryAgents(context);
    known.agents.insert(known.agents.end(), found.begin(), found.end());
  }
  std::erase_if(known.agents, [&](const KnownAgent& agent) { return !ListsIntersect(scopes, agent.scopes); });
  return LongestIntervalOf(known.agents, context, deadline);
}

unsigned short RefreshIntervalCall() noexcept {
  constexpr std::chrono::seconds kLongest{SLP_LIFETIME_MAXIMUM};
  unsigned short interval = 0;
  static_cast<void>(Guarded([&] {
    const std::chrono::seconds longest = LongestRefreshInterval(MakeContext({"en", {}, {}}));
    interval = static_cast<unsigned short>(std::min(longest, kLongest).count());
    return SLP_OK;
  }));
  return interval;
}

}  // namespace slp::client
