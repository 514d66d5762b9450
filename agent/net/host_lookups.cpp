#include "net/host_lookups.h"

#include <algorithm>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <deque>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

#include "net/addresses.h"
#include "net/loaded_code.h"

namespace slp {
namespace {

// The failure that is being handled.
HostAnswer Failure() noexcept {
  try {
    throw;
  } catch (const std::system_error& error) {
    if (error.code()) {
      return {error.code(), {}};
    }
  } catch (const std::bad_alloc&) {
    return {asio::error::no_memory, {}};
  } catch (...) {
    // Says nothing that an answer could hold.
  }
  return {asio::error::no_recovery, {}};
}

// The first addresses that can be a host's. Without any the name is as good as not found.
HostAnswer OfHosts(const HostAnswer& any) {
  HostAnswer answer{any.error, {}};
  for (const asio::ip::address& one : any.addresses) {
    const asio::ip::address address = Plain(one);
    const bool known =
        std::find(answer.addresses.begin(), answer.addresses.end(), address) != answer.addresses.end();
    if (!known && !address.is_unspecified() && !address.is_multicast() &&
        answer.addresses.size() < HostLookups::kMostAddresses) {
      answer.addresses.push_back(address);
    }
  }
  if (!answer.error && answer.addresses.empty()) {
    answer.error = asio::error::host_not_found;
  }
  return answer;
}

// Nobody is there to catch what leaves a thread of the lookups: it would end the program.
HostAnswer Ask(const HostLookups::Resolve& resolve, const HostQuery& query) noexcept {
  try {
    return OfHosts(resolve(query));
  } catch (...) {
    return Failure();
  }
}

}  // namespace

struct HostLookups::State {
  std::mutex mutex;
  Done done;  ///< empty when the owner has gone
  Resolve resolve;
  std::deque<HostQuery> waiting;
  std::size_t threads = 0;
};

HostLookups::HostLookups(Done done, Resolve resolve) : state_(std::make_shared<State>()) {
  state_->done = std::move(done);
  state_->resolve = std::move(resolve);
}

HostLookups::~HostLookups() {
  const std::lock_guard lock(state_->mutex);
  state_->done = nullptr;
  state_->waiting.clear();
}

void HostLookups::Begin(const HostQuery& query) noexcept {
  const std::lock_guard lock(state_->mutex);
  bool waits = false;
  try {
    state_->waiting.push_back(query);
    waits = true;
    if (state_->threads < kSideBySide) {
      KeepCodeLoaded();
      std::thread([state = state_] { Work(state); }).detach();
      ++state_->threads;
    }
  } catch (...) {
    if (waits && state_->threads > 0) {
      return;  // one that runs takes it in its turn
    }
    if (waits) {
      state_->waiting.pop_back();
    }
    Tell(*state_, query, Failure());
  }
}

void HostLookups::Work(const std::shared_ptr<State>& state) {
  std::unique_lock lock(state->mutex);
  while (!state->waiting.empty()) {
    const HostQuery query = std::move(state->waiting.front());
    state->waiting.pop_front();
    lock.unlock();
    const HostAnswer answer = Ask(state->resolve, query);
    lock.lock();
    Tell(*state, query, answer);
  }
  --state->threads;
}

// With the lock held. Who can't even be told of the failure isn't told.
void HostLookups::Tell(const State& state, const HostQuery& query, const HostAnswer& answer) noexcept {
  if (!state.done) {
    return;
  }
  try {
    state.done(query, answer);
  } catch (...) {
    const HostAnswer failure = Failure();
    try {
      state.done(query, failure);
    } catch (...) {
      return;
    }
  }
}

HostAnswer HostLookups::AskSystem(const HostQuery& query) {
  using asio::ip::udp;
  HostAnswer answer;
  asio::io_context io;
  udp::resolver resolver(io);
  const udp::resolver::flags none{};
  const auto results = query.ipv6 ? resolver.resolve(query.name, "", none, answer.error)
                                  : resolver.resolve(udp::v4(), query.name, "", none, answer.error);
  for (const auto& result : results) {
    answer.addresses.push_back(result.endpoint().address());
  }
  return answer;
}

}  // namespace slp
