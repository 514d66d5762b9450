// The replies that a search fetches by TCP from those who could send only a part of theirs as a datagram.
// Nothing blocks; waiting is WaitUntilReady's. One thread at a time.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/address.hpp>
#include <chrono>
#include <cstddef>
#include <deque>
#include <list>
#include <optional>
#include <span>
#include <vector>

#include "api/request_context.h"
#include "api/stream_fetch.h"
#include "net/native_socket.h"
#include "wire/messages.h"

namespace slp::client {

class StreamFetches {
 public:
  struct Fetched {
    Message reply;
    asio::ip::address agent;
  };

  /// Replies that are fetched side by side; the others wait for their turn.
  static constexpr std::size_t kSideBySide = 16;

  /// `request` and `context` outlive the object.
  StreamFetches(asio::io_context& io, const Message& request, const RequestContext& context);

  /// Begins to fetch the reply of `agent` at net.slp.port, as soon as it has its turn. From then on there is
  /// net.slp.unicastMaximumWait for it.
  void Add(const asio::ip::address& agent);

  /// Whether none is under way.
  bool empty() const { return running_.empty(); }

  /// What those under way wait for; kSideBySide sockets at most.
  std::vector<AwaitedSocket> Awaited();

  /// How long they may wait for it; the longest time when there are none.
  std::chrono::milliseconds Remaining() const;

  /// `awaited` is what Awaited has returned, with what is ready marked. The replies that have come in, in the
  /// order of their beginnings; where there is none to be had, nothing tells.
  std::vector<Fetched> Advance(std::span<const AwaitedSocket> awaited);

  /// Gives those under way so much more time.
  void Postpone(std::chrono::steady_clock::duration by);

 private:
  struct Running {
    asio::ip::address agent;
    StreamFetch fetch;
  };

  void StartNext();

  asio::io_context& io_;
  const Message& request_;
  const RequestContext& context_;
  const Result<Bytes> encoded_;
  std::list<Running> running_;
  std::deque<asio::ip::address> waiting_;  ///< empty while there is room among those that run
};

}  // namespace slp::client
