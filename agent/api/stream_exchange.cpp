#include "api/stream_exchange.h"

#include <asio/io_context.hpp>

#include "api/stream_fetch.h"

namespace slp::client {

Exchange ExchangeByStream(const StreamPeer& peer, const Message& request,
                          std::span<const std::uint8_t> encoded, const Deadline& deadline) {
  asio::io_context io;
  StreamFetch fetch(io, request, encoded, deadline);
  std::optional<Exchange> exchange = fetch.Start({peer.address, peer.port});
  while (!exchange) {
    const AwaitedSocket awaited = fetch.Awaited();
    exchange = fetch.Advance(WaitUntilReady(awaited.socket, awaited.operation, deadline.Remaining()));
  }
  return *std::move(exchange);
}

}  // namespace slp::client
