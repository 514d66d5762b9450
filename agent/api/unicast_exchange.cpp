// 1. A request that is longer than net.slp.MTU goes by TCP.
// 2. Otherwise it is sent as a datagram, with the same XID each time, and after the nth time the reply is
//    waited for as long as the nth of net.slp.unicastTimeouts says, all together no longer than
//    net.slp.unicastMaximumWait.
// 3. A reply that has been cut is fetched again by TCP in the time that is left.
#include "api/unicast_exchange.h"

#include "api/request_message.h"
#include "api/stream_exchange.h"
#include "net/unicast_socket.h"
#include "wire/codec.h"

namespace slp::client {
namespace {

using End = Exchange::End;
using Received = UnicastSocket::Received;

/// Datagrams that are taken between two looks at the clock, so that a flood cannot outlast the time.
constexpr int kDatagramsPerLook = 64;

/// The reply if it comes by `limit`; kTimedOut when it has not.
Exchange AwaitReply(UnicastSocket& socket, const Message& request, const Deadline& limit) {
  std::span<const std::uint8_t> datagram;
  do {
    if (!WaitUntilReady(socket.native_handle(), AwaitedSocket::For::kReading, limit.Remaining())) {
      continue;
    }
    for (int i = 0; i < kDatagramsPerLook; ++i) {
      const Received received = socket.Receive(datagram);
      if (received == Received::kRefused) {
        return {End::kRefused, std::nullopt};
      }
      if (received == Received::kFailed) {
        return {End::kFailed, std::nullopt};
      }
      if (received == Received::kNothing) {
        break;
      }
      std::optional<Message> reply = ReadReply(datagram, request);
      if (reply && ReplyError(*reply) != Error::kDaBusyNow) {
        return Exchange::Replied(std::move(*reply));
      }
    }
  } while (!limit.Passed());
  return {End::kTimedOut, std::nullopt};
}

Exchange ExchangeByDatagrams(const StreamPeer& peer, const Message& request, const Bytes& encoded,
                             const RequestSettings::Waits& waits, const Deadline& deadline) {
  std::optional<UnicastSocket> socket = UnicastSocket::ConnectedTo({peer.address, peer.port});
  if (!socket) {
    return {End::kFailed, std::nullopt};
  }
  for (const auto wait : waits.tries) {
    if (!socket->Send(encoded)) {
      return {End::kFailed, std::nullopt};
    }
    Exchange exchange = AwaitReply(*socket, request, deadline.Within(wait));
    if (exchange.end != End::kTimedOut || deadline.Passed()) {
      return exchange;
    }
  }
  return {End::kTimedOut, std::nullopt};
}

}  // namespace

Exchange ExchangeWith(const asio::ip::address& peer, const Message& request, const RequestContext& context) {
  const Result<Bytes> encoded = Encode(request);
  if (!encoded) {
    return {End::kTooLarge, std::nullopt};
  }
  const RequestSettings& settings = context.settings;
  const Deadline deadline(context.environment.clock, settings.unicast.maximum);
  const StreamPeer target{peer, settings.port};
  if (encoded->size() > settings.mtu) {
    return ExchangeByStream(target, request, *encoded, deadline);
  }
  Exchange exchange = ExchangeByDatagrams(target, request, *encoded, settings.unicast, deadline);
  if (exchange.end != End::kReplied || !exchange.reply->header.overflow) {
    return exchange;
  }
  exchange = ExchangeByStream(target, request, *encoded, deadline);
  // An agent that has just answered runs; it does not take connections.
  return exchange.end == End::kRefused ? Exchange{End::kFailed, std::nullopt} : exchange;
}

}  // namespace slp::client
