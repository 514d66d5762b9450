// 1. Ask at 127.0.0.1.
// 2. Where nobody listens, ask at this host's own address on each interface that net.slp.interfaces selects:
//    a daemon that is bound to them alone doesn't hear the loopback interface.
// 3. The first answer counts, be it an error; so does the silence of a daemon that is there.
#include "api/local_daemon.h"

#include <algorithm>

#include "api/error_mapping.h"
#include "api/request_message.h"
#include "api/unicast_exchange.h"
#include "net/interfaces.h"

namespace slp::client {

std::optional<asio::ip::address> LocalDaemonAddresses::Next() {
  if (told_ == 0) {
    addresses_.push_back(asio::ip::address_v4::loopback());
  } else if (told_ == 1) {
    const auto all = EnumerateInterfaces(settings_.use_ipv6);
    for (const Interface& interface :
         SelectInterfaces(all.value_or(std::vector<Interface>()), settings_.interfaces).interfaces) {
      if (std::find(addresses_.begin(), addresses_.end(), interface.address) == addresses_.end()) {
        addresses_.push_back(interface.address);
      }
    }
  }
  return told_ < addresses_.size() ? std::optional(addresses_[told_++]) : std::nullopt;
}

SLPError AskLocalDaemon(const Message& request, const RequestContext& context) {
  LocalDaemonAddresses addresses(context.settings);
  while (const auto address = addresses.Next()) {
    const Exchange exchange = ExchangeWith(*address, request, context);
    if (exchange.end == Exchange::End::kReplied) {
      return ToSlpError(ReplyError(*exchange.reply));
    }
    if (exchange.end != Exchange::End::kRefused && exchange.end != Exchange::End::kFailed) {
      return ToSlpError(exchange.end);
    }
  }
  return SLP_NETWORK_INIT_FAILED;
}

}  // namespace slp::client
