// What the answer to one request is made from, and the functions that make it, one file a family of messages.
// One thread at a time, the registry's.
#pragma once

#include <cstddef>
#include <string_view>
#include <variant>

#include "base/error.h"
#include "slpd/agent_settings.h"
#include "slpd/event_sink.h"
#include "slpd/registry/registry.h"
#include "slpd/request_origin.h"
#include "slpd/requests/request_handler.h"
#include "slpd/seconds.h"
#include "text/effort.h"
#include "wire/messages.h"

namespace slp {

struct RequestContext {
  Registry& registry;
  const AgentSettings& settings;
  EventSink& events;
  const RequestHandler::ProcessProbe& process_exists;
  const RequestHandler::KnownAgents& known_agents;
  const Header& header;
  const RequestOrigin& origin;
  Instant now;
  bool multicast;     ///< sent to a group or broadcast: neither errors nor empty replies are sent back
  std::size_t limit;  ///< bytes that the reply may have
  Effort& effort;     ///< what comparing may cost; when it does not suffice, the reply is kInternalError
};

/// Why there is no answer.
struct Silence {
  std::string_view reason;
};

/// A reply's body; `cut`: something had to be left out of it already, so it carries the overflow flag.
struct Reply {
  Body body;
  bool cut = false;
};

using Answer = std::variant<Reply, Silence>;

/// RFC 2608 sections 8.1, 8.2, 8.5 and 8.6.
Answer AnswerServiceRequest(const RequestContext& context, const SrvRqst& request);

/// RFC 2608 section 8.6: this service agent itself is asked for.
Answer AnswerServiceAgentRequest(const RequestContext& context, const SrvRqst& request);

/// RFC 2608 section 8.5: directory agents are asked for.
Answer AnswerDirectoryAgentRequest(const RequestContext& context, const SrvRqst& request);

/// RFC 2608 sections 10.3 and 10.4.
Answer AnswerAttributeRequest(const RequestContext& context, const AttrRqst& request);

/// RFC 2608 sections 10.1 and 10.2.
Answer AnswerServiceTypeRequest(const RequestContext& context, const SrvTypeRqst& request);

/// RFC 2608 sections 8.3, 8.4 and 9.3.
Answer AnswerRegistration(const RequestContext& context, const SrvReg& request);

/// RFC 2608 section 10.6.
Answer AnswerDeregistration(const RequestContext& context, const SrvDereg& request);

/// The reply that belongs to `request`, with an error and nothing else (RFC 2608 section 7). Silence for
/// messages that have no reply.
Answer ErrorAnswer(FunctionId request, Error error);

}  // namespace slp
