// Searches by way of directory agents (RFC 2608 sections 6 and 12): which there are, and asking those that
// serve the scopes. Blocks by the properties' limits; any thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "api/directory_agent_cache.h"
#include "api/multicast_convergence.h"
#include "api/request_context.h"
#include "net/deadline.h"
#include "slp.h"
#include "wire/messages.h"

namespace slp::client {

/// What is known of directory agents for these scopes.
struct DirectoryKnowledge {
  std::vector<KnownAgent> agents;
  bool enough = false;  ///< they serve all the scopes together
  bool search = false;  ///< nobody on this host looks for them, so that a search should
};

/// Which of the configured agents are asked to tell their scopes: as many as serve the wanted ones, or all.
enum class Configured { kEnough, kAll };

/// The time that all questions of one call to agents about themselves take at most:
/// net.slp.unicastMaximumWait from now on. An agent that does not answer in its share of it is left out for a
/// minute.
Deadline TimeForQuestions(const RequestContext& context);

/// Looks where it costs next to nothing: the configured agents, of which each has to tell its scopes once,
/// and a name has to be looked up once; else the daemon of this host, which looks for directory agents
/// anyway; else what this process has found before. Agents that did not answer lately are left out.
DirectoryKnowledge FindDirectoryAgents(const std::vector<std::string>& scopes, Configured configured,
                                       const RequestContext& context, const Deadline& deadline);

/// Asks as few of `agents` as serve all the scopes together. None, when they don't, or when one that would be
/// needed does not answer and no other can take its place: then everyone has to be asked. `sink` may have had
/// replies by then.
std::optional<SLPError> AskDirectoryAgents(std::vector<KnownAgent> agents,
                                           const std::vector<std::string>& scopes, const Message& request,
                                           const RequestContext& context, const ReplySink& sink);

/// Asks everyone for directory agents, and keeps who answers for later searches. Blocks, at most
/// net.slp.multicastMaximumWait.
std::vector<KnownAgent> SearchDirectoryAgents(const RequestContext& context);

/// The longest refresh interval that one of the agents advertises, for which those are asked whose is not
/// known; 0 when none has one or answers.
std::chrono::seconds LongestIntervalOf(const std::vector<KnownAgent>& agents, const RequestContext& context,
                                       const Deadline& deadline);

/// The request that looks for directory agents.
Message DirectoryAgentRequest(const std::string& scopes, const RequestContext& context);

/// The agent that an advertisement which came from `sender` speaks of, kept for later searches; none when it
/// reports an error, or goes down, or speaks of another address than its own.
std::optional<KnownAgent> Remember(const Message& advertisement, const asio::ip::address& sender,
                                   const RequestContext& context);

/// Adds the agent that `Remember` makes of an answer to `found`, in place of what it has said before; no more
/// of them than are kept.
void Gather(std::vector<KnownAgent>& found, const Message& advertisement, const asio::ip::address& sender,
            const RequestContext& context);

}  // namespace slp::client
