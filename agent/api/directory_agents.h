// Searches by way of directory agents (RFC 2608 sections 6 and 12): which there are, and asking those that
// serve the scopes. Blocks by the properties' limits; any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "api/directory_agent_cache.h"
#include "api/multicast_convergence.h"
#include "api/request_context.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// What is known of directory agents for these scopes.
struct DirectoryKnowledge {
  std::vector<KnownAgent> agents;
  bool search = false;  ///< nobody on this host looks for them, so that a search should
};

/// Looks where it costs next to nothing: the configured agents, of which each has to tell its scopes once;
/// else the daemon of this host, which looks for directory agents anyway; else what this process has found
/// before. Agents that did not answer lately are left out.
DirectoryKnowledge FindDirectoryAgents(const std::vector<std::string>& scopes, const RequestContext& context);

/// Asks as few of `agents` as serve all the scopes together. None, when they don't, or when one that would be
/// needed does not answer and no other can take its place: then everyone has to be asked. `sink` may have had
/// replies by then.
std::optional<SLPError> AskDirectoryAgents(std::vector<KnownAgent> agents,
                                           const std::vector<std::string>& scopes, const Message& request,
                                           const RequestContext& context, const ReplySink& sink);

/// The request that looks for directory agents.
Message DirectoryAgentRequest(const std::string& scopes, const RequestContext& context);

/// The agent that an advertisement which came from `sender` speaks of, kept for later searches; none when it
/// reports an error, or goes down, or speaks of another address than its own.
std::optional<KnownAgent> Remember(const Message& advertisement, const asio::ip::address& sender,
                                   const RequestContext& context);

}  // namespace slp::client
