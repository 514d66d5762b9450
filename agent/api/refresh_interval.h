// How often directory agents let services be registered anew (RFC 2614 section 4.6.1). Blocks by the
// properties' limits; any thread.
#pragma once

#include <chrono>

namespace slp::client {

struct RequestContext;

/// The longest interval that a directory agent which serves a scope of net.slp.useScopes advertises; 0: none
/// advertises one. The agents are those that a search would ask; with none known and nobody on this host who
/// looks for them, they are searched for. Each tells its interval once.
std::chrono::seconds LongestRefreshInterval(const RequestContext& context);

/// What SLPGetRefreshInterval returns: the same, at most the longest lifetime there is, and 0 when it cannot
/// be found out.
unsigned short RefreshIntervalCall() noexcept;

}  // namespace slp::client
