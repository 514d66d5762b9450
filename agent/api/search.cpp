#include "api/search.h"

#include <utility>
#include <variant>

#include "api/directory_agents.h"
#include "api/error_mapping.h"
#include "api/request_message.h"
#include "api/unicast_exchange.h"
#include "text/fold.h"
#include "text/string_list.h"

namespace slp::client {
namespace {

SLPError AskOne(const asio::ip::address& agent, const Message& request, const RequestContext& context,
                const ReplySink& sink) {
  const Exchange exchange = ExchangeWith(agent, request, context);
  if (exchange.end != Exchange::End::kReplied) {
    return ToSlpError(exchange.end);
  }
  const Error error = ReplyError(*exchange.reply);
  if (error == Error::kOk) {
    sink(*exchange.reply);
  }
  return ToSlpError(error);
}

std::vector<std::string> ScopesOf(const Message& request) {
  return std::visit(
      [](const auto& body) -> std::vector<std::string> {
        if constexpr (requires { body.scopes; }) {
          return ListUnion({}, SplitStringList(body.scopes));
        } else {
          return {};
        }
      },
      request.body);
}

/// Requests for the agents themselves are for all of them (RFC 2608 section 8.1).
bool AsksForAgents(const Message& request) {
  const auto* services = std::get_if<SrvRqst>(&request.body);
  return services != nullptr && (EqualFolded(services->service_type, kDirectoryAgentType) ||
                                 EqualFolded(services->service_type, kServiceAgentType));
}

/// Asks everyone, and looks for directory agents on the way, so that finding none costs no time. Those that
/// are found are asked afterwards: they may know of services that the multicast did not reach.
SLPError AskEveryoneAndSearchAgents(const Message& request, const std::vector<std::string>& scopes,
                                    const RequestContext& context, const ReplySink& sink) {
  std::vector<KnownAgent> found;
  Companion companion{
      DirectoryAgentRequest({}, context),
      [&](const Message& reply, const asio::ip::address& sender) { Gather(found, reply, sender, context); }};
  // By its XID alone a reply tells which of the two it answers.
  while (companion.request.header.xid == request.header.xid) {
    companion.request.header.xid = context.environment.new_xid();
  }
  bool wanted = true;
  const ReplySink watched = [&](const Message& reply) { return wanted = sink(reply); };
  const SLPError error = Converge(request, context, watched, &companion);
  if (error == SLP_OK && wanted) {
    // Everyone has been asked already: what a directory agent cannot say is nobody's error.
    static_cast<void>(AskDirectoryAgents(std::move(found), scopes, request, context, watched));
  }
  return error;
}

}  // namespace

// 1. An agent that the handle names is the only one that is asked.
// 2. Else directory agents that serve the scopes stand for everyone (RFC 2608 section 11.1). When one of them
//    has gone, another one may take its place that has not been asked for its scopes, since those were
//    enough.
// 3. Else everyone is asked.
SLPError RunSearch(const Message& request, const RequestContext& context, const ReplySink& sink) {
  if (context.handle.peer) {
    return AskOne(*context.handle.peer, request, context, sink);
  }
  if (AsksForAgents(request)) {
    return Converge(request, context, sink);
  }
  const std::vector<std::string> scopes = ScopesOf(request);
  const auto find = [&] {
    return FindDirectoryAgents(scopes, Configured::kEnough, context, TimeForQuestions(context));
  };
  DirectoryKnowledge known = find();
  auto error = AskDirectoryAgents(known.agents, scopes, request, context, sink);
  if (!error && known.enough) {
    known = find();
    error = AskDirectoryAgents(known.agents, scopes, request, context, sink);
  }
  if (error) {
    return *error;
  }
  return known.search ? AskEveryoneAndSearchAgents(request, scopes, context, sink)
                      : Converge(request, context, sink);
}

}  // namespace slp::client
