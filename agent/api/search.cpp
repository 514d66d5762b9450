#include "api/search.h"

#include <variant>

#include "api/error_mapping.h"
#include "api/request_message.h"
#include "api/unicast_exchange.h"

namespace slp::client {
namespace {

struct Everyone {};
struct OneAgent {
  asio::ip::address_v4 address;
};
using Target = std::variant<Everyone, OneAgent>;

Target SelectTarget(const RequestContext& context) {
  if (context.handle.peer) {
    return OneAgent{*context.handle.peer};
  }
  return Everyone{};
}

SLPError Run(const OneAgent& agent, const Message& request, const RequestContext& context,
             const ReplySink& sink) {
  const Exchange exchange = ExchangeWith(agent.address, request, context);
  if (exchange.end != Exchange::End::kReplied) {
    return ToSlpError(exchange.end);
  }
  const Error error = ReplyError(*exchange.reply);
  if (error == Error::kOk) {
    sink(*exchange.reply);
  }
  return ToSlpError(error);
}

SLPError Run(const Everyone& /*target*/, const Message& request, const RequestContext& context,
             const ReplySink& sink) {
  return Converge(request, context, sink);
}

}  // namespace

SLPError RunSearch(const Message& request, const RequestContext& context, const ReplySink& sink) {
  return std::visit([&](const auto& target) { return Run(target, request, context, sink); },
                    SelectTarget(context));
}

}  // namespace slp::client
