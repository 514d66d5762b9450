#include "api/host_name_cache.h"

#include <algorithm>
#include <utility>

namespace slp::client {
namespace {

/// How long an answer counts, and that there is none (CONFIG_DA_FIND, RFC 2608 section 13).
constexpr std::chrono::seconds kFoundFor{900};
constexpr std::chrono::seconds kMissingFor{60};

}  // namespace

HostNameCache::HostNameCache(HostLookups::Resolve resolve, SteadyClock clock)
    : clock_(std::move(clock)),
      lookups_([this](const HostQuery& query, const HostAnswer& answer) { Take(query, answer); },
               std::move(resolve)) {}

HostNameCache& HostNameCache::Instance() {
  static HostNameCache& cache = *new HostNameCache;
  return cache;
}

// 1. What is not known, or not any more, is looked up; outside the lock, which the answers take. Nothing that
// can fail stands between the mark and the lookup: the mark would stay for ever.
// 2. Those that have had no answer yet are waited for, and after that no more.
std::vector<asio::ip::address> HostNameCache::Addresses(const std::vector<HostQuery>& queries,
                                                        std::chrono::milliseconds wait) {
  for (const HostQuery& query : queries) {
    if (MarkDue(query)) {
      lookups_.Begin(query);
    }
  }
  std::unique_lock lock(mutex_);
  answered_.wait_for(lock, wait, [&] { return !AnyAwaited(queries); });
  std::vector<asio::ip::address> addresses;
  for (const HostQuery& query : queries) {
    Entry& entry = entries_.at(query);
    entry.awaited = false;
    for (const asio::ip::address& address : entry.addresses) {
      if (std::find(addresses.begin(), addresses.end(), address) == addresses.end()) {
        addresses.push_back(address);
      }
    }
  }
  return addresses;
}

bool HostNameCache::MarkDue(const HostQuery& query) {
  const std::lock_guard lock(mutex_);
  const auto [entry, added] = entries_.try_emplace(query);
  if (entry->second.under_way || (!added && entry->second.until > clock_())) {
    return false;
  }
  entry->second.under_way = true;
  return true;
}

// A name that is not found any more keeps the addresses that it had.
void HostNameCache::Take(const HostQuery& query, const HostAnswer& answer) {
  {
    const std::lock_guard lock(mutex_);
    Entry& entry = entries_.at(query);
    entry.under_way = false;
    entry.awaited = false;
    entry.until = clock_() + (answer.error ? kMissingFor : kFoundFor);
    if (!answer.error) {
      entry.addresses = answer.addresses;
    }
  }
  answered_.notify_all();
}

bool HostNameCache::AnyAwaited(const std::vector<HostQuery>& queries) const {
  return std::any_of(queries.begin(), queries.end(),
                     [this](const HostQuery& query) { return entries_.at(query).awaited; });
}

}  // namespace slp::client
