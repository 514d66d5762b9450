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

std::vector<asio::ip::address> LocalDaemonAddresses(const RequestSettings& settings) {
  std::vector<asio::ip::address> addresses = {asio::ip::address_v4::loopback()};
  const std::vector<Interface> all = EnumerateInterfaces(settings.use_ipv6);
  for (const Interface& interface : SelectInterfaces(all, settings.interfaces).interfaces) {
    if (std::find(addresses.begin(), addresses.end(), interface.address) == addresses.end()) {
      addresses.push_back(interface.address);
    }
  }
  return addresses;
}

SLPError AskLocalDaemon(const Message& request, const RequestContext& context) {
  for (const asio::ip::address& address : LocalDaemonAddresses(context.settings)) {
    const Exchange exchange = ExchangeWith(address, request, context);
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
