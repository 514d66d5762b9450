#include "api/request_message.h"

#include <utility>

#include "text/fold.h"
#include "text/ip_address.h"
#include "text/string_list.h"
#include "wire/codec.h"

namespace slp::client {
namespace {

/// RFC 2608 section 8.1: requests for agents themselves are answered with advertisements. A service agent
/// that is asked for directory agents answers as for any other service.
bool AnswersSrvRqst(FunctionId reply, const SrvRqst& request) {
  if (EqualFolded(request.service_type, kDirectoryAgentType)) {
    return reply == FunctionId::kDaAdvert || reply == FunctionId::kSrvRply;
  }
  return reply == (EqualFolded(request.service_type, kServiceAgentType) ? FunctionId::kSaAdvert
                                                                        : FunctionId::kSrvRply);
}

bool Answers(FunctionId reply, const Message& request) {
  switch (request.function()) {
    case FunctionId::kSrvRqst:
      return AnswersSrvRqst(reply, std::get<SrvRqst>(request.body));
    case FunctionId::kAttrRqst:
      return reply == FunctionId::kAttrRply;
    case FunctionId::kSrvTypeRqst:
      return reply == FunctionId::kSrvTypeRply;
    case FunctionId::kSrvReg:
    case FunctionId::kSrvDereg:
      return reply == FunctionId::kSrvAck;
    default:
      return false;
  }
}

}  // namespace

Message NewRequest(const RequestContext& context, Body body) {
  Message request;
  request.header.xid = context.environment.new_xid();
  request.header.language = context.handle.language;
  request.body = std::move(body);
  return request;
}

Message AsMulticast(Message request, const std::vector<std::string>& responders) {
  request.header.request_multicast = true;
  std::visit(
      [&](auto& body) {
        if constexpr (requires { body.previous_responders; }) {
          body.previous_responders = JoinStringList(responders);
        }
      },
      request.body);
  return request;
}

std::vector<std::string> WithoutLoopback(std::vector<std::string> responders) {
  std::erase_if(responders, IsLoopbackAddress);
  return responders;
}

std::optional<Message> ReadReply(std::span<const std::uint8_t> bytes, const Message& request) {
  Result<Message> reply = Decode(bytes);
  if (!reply || reply->header.xid != request.header.xid || !Answers(reply->function(), request)) {
    return std::nullopt;
  }
  return std::move(reply).value();
}

bool AsksForDirectoryAgents(const Message& request) {
  const auto* services = std::get_if<SrvRqst>(&request.body);
  return services != nullptr && EqualFolded(services->service_type, kDirectoryAgentType);
}

Error ReplyError(const Message& reply) {
  return std::visit(
      [](const auto& body) {
        if constexpr (requires { body.error; }) {
          return body.error;
        } else {
          return Error::kOk;
        }
      },
      reply.body);
}

}  // namespace slp::client
