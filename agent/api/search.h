// Where a search goes, and its run. Blocks by the properties' limits; any thread.
#pragma once

#include "api/multicast_convergence.h"
#include "api/request_context.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// Sends `request` to the agent that the handle names, else to directory agents that serve its scopes, or
/// else to everyone, and hands each reply that carries no error to `sink`. The error of a certain agent's
/// reply is the search's; with everyone asked, a reply that reports an error only doesn't count.
SLPError RunSearch(const Message& request, const RequestContext& context, const ReplySink& sink);

}  // namespace slp::client
