// Searching services by their type. Any thread may call it.
#include <slp.h>

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "client/client_impl.h"
#include "client/search.h"

namespace kelsd {

namespace {

struct ServiceReplies {
  SearchOutcome outcome;
  std::vector<SKelServiceSearchResult> services;
  std::unordered_set<std::string> urls;  // of the services; there may be tens of thousands
};

/// Collects each URL once, with the lifetime that came with it first, until the replies end or one is an
/// error.
extern "C" SLPBoolean SLPCALLBACK CollectService(SLPHandle, const char* url, unsigned short lifetime,
                                                 SLPError code, void* cookie) {
  auto& replies = *static_cast<ServiceReplies*>(cookie);
  return HandleReply(replies.outcome, code, [&] {
    SKelServiceSearchResult service(url == nullptr ? "" : url, lifetime);
    if (replies.urls.insert(service.URL).second) {
      replies.services.push_back(std::move(service));
    }
    return SLP_TRUE;
  });
}

}  // namespace

// 1. The scopes are cleaned and written as a list.
// 2. A handle is opened, closed again on every way out,
// 3. and bound to the address if there is one.
// 4. The search collects URLs and lifetimes; an error of the call goes before one of a reply.
// 5. Each URL is split; the parts of one that cannot be split stay empty.
// 6. The services are sorted by URL.
SResult CKelSLPClientImpl::FindServices(std::vector<SKelServiceSearchResult>& results,
                                        const std::string& serviceType,
                                        const std::vector<std::string>& scopes,
                                        const std::string& searchFilter, const std::string& address) {
  return RunSearch("kelsd::CKelSLPClientImpl::FindServices", [&]() -> SResult {
    std::string scope_list;
    SResult listed = MakeSearchScopes(scope_list, scopes);
    if (listed.IsNotOk()) {
      return listed;
    }
    SLPHandleBox box;
    SResult opened = OpenSearchHandle(box, address);
    if (opened.IsNotOk()) {
      return opened;
    }
    ServiceReplies replies;
    const SLPError answer = SLPFindSrvs(box.handle, serviceType.c_str(), scope_list.c_str(),
                                        searchFilter.c_str(), &CollectService, &replies);
    SResult found = SearchResult("SLPFindSrvs", answer, replies.outcome);
    if (found.IsNotOk()) {
      return found;
    }
    for (SKelServiceSearchResult& service : replies.services) {
      [[maybe_unused]] const SResult split = CKelSLPImpl::ParseServiceURL(service, service.URL);
    }
    std::sort(replies.services.begin(), replies.services.end());
    results = std::move(replies.services);
    return {SResult::ERR_SUCCESS};
  });
}

SResult CKelSLPClientImpl::FindServices(std::vector<SKelServiceSearchResult>& results,
                                        const IKelServiceType& type, const std::string& searchFilter,
                                        const std::string& address) {
  const auto search = [&] {
    return FindServices(results, type.GetTypeString(), type.GetScopes(), searchFilter, address);
  };
  return CKelSLPImpl::InvokeNoThrow(std::cref(search));
}

}  // namespace kelsd
