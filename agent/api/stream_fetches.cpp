#include "api/stream_fetches.h"

#include <algorithm>
#include <utility>

#include "wire/codec.h"

namespace slp::client {

StreamFetches::StreamFetches(asio::io_context& io, const Message& request, const RequestContext& context)
    : io_(io), request_(request), context_(context), encoded_(Encode(request)) {}

void StreamFetches::Add(const asio::ip::address& agent) {
  if (!encoded_) {
    return;
  }
  waiting_.push_back(agent);
  StartNext();
}

std::vector<AwaitedSocket> StreamFetches::Awaited() {
  std::vector<AwaitedSocket> awaited;
  for (Running& running : running_) {
    awaited.push_back(running.fetch.Awaited());
  }
  return awaited;
}

std::chrono::milliseconds StreamFetches::Remaining() const {
  auto least = std::chrono::milliseconds::max();
  for (const Running& running : running_) {
    least = std::min(least, running.fetch.Remaining());
  }
  return least;
}

std::vector<StreamFetches::Fetched> StreamFetches::Advance(std::span<const AwaitedSocket> awaited) {
  std::vector<Fetched> fetched;
  auto running = running_.begin();
  for (const AwaitedSocket& socket : awaited) {
    std::optional<Exchange> exchange = running->fetch.Advance(socket.ready);
    if (!exchange) {
      ++running;
      continue;
    }
    if (exchange->reply) {
      fetched.push_back({*std::move(exchange->reply), running->agent});
    }
    running = running_.erase(running);
  }
  StartNext();
  return fetched;
}

void StreamFetches::Postpone(std::chrono::steady_clock::duration by) {
  for (Running& running : running_) {
    running.fetch.Postpone(by);
  }
}

void StreamFetches::StartNext() {
  while (running_.size() < kSideBySide && !waiting_.empty()) {
    const asio::ip::address agent = waiting_.front();
    waiting_.pop_front();
    const RequestSettings& settings = context_.settings;
    running_.push_back({agent, StreamFetch(io_, request_, *encoded_,
                                           Deadline(context_.environment.clock, settings.unicast.maximum))});
    if (running_.back().fetch.Start({agent, settings.port})) {
      running_.pop_back();
    }
  }
}

}  // namespace slp::client
