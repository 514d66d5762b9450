// Requests as messages, and telling their replies from everything else that reaches a socket. Pure functions;
// any thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "api/request_context.h"
#include "wire/messages.h"

namespace slp::client {

/// A request with a new XID in the language of the handle.
Message NewRequest(const RequestContext& context, Body body);

/// `request` as it is multicast: flagged, and with those that answered already (RFC 2608 section 6.3).
Message AsMulticast(Message request, const std::vector<std::string>& responders);

/// `responders` without the addresses of 127.0.0.0/8 and ::1, which on another host would name that host's
/// own agent.
std::vector<std::string> WithoutLoopback(std::vector<std::string> responders);

/// The message in `bytes` when it answers `request`: well-formed, the same XID, and the kind of reply that
/// the request asks for.
std::optional<Message> ReadReply(std::span<const std::uint8_t> bytes, const Message& request);

/// The types of the agents themselves (RFC 2608 section 8.1).
inline constexpr std::string_view kDirectoryAgentType = "service:directory-agent";
inline constexpr std::string_view kServiceAgentType = "service:service-agent";

/// Whether the request looks for directory agents (RFC 2608 section 8.5).
bool AsksForDirectoryAgents(const Message& request);

/// The error that a reply carries; those without an error code carry none.
Error ReplyError(const Message& reply);

}  // namespace slp::client
