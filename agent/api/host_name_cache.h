// The addresses of hosts that are configured by name, so that not every search waits for a name server. Any
// thread.
#pragma once

#include <asio/ip/address.hpp>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <vector>

#include "net/deadline.h"
#include "net/host_lookups.h"

namespace slp::client {

class HostNameCache {
 public:
  explicit HostNameCache(
      HostLookups::Resolve resolve = HostLookups::AskSystem,
      SteadyClock clock = [] { return std::chrono::steady_clock::now(); });
  HostNameCache(const HostNameCache&) = delete;
  HostNameCache& operator=(const HostNameCache&) = delete;

  /// The one of this process. Never destroyed, so that it serves lookups that outlive main.
  static HostNameCache& Instance();

  /// What the names stand for, as far as it is known, each address once in the order of the names. Waits for
  /// those that have had no answer yet, at most so long, and only for the first time that long: a name whose
  /// answer did not come in time is waited for no more. Names that are known are looked up anew after a
  /// while, without waiting; those that were not found, after a minute.
  std::vector<asio::ip::address> Addresses(const std::vector<HostQuery>& queries,
                                           std::chrono::milliseconds wait);

 private:
  struct Entry {
    std::vector<asio::ip::address> addresses;
    bool under_way = false;
    bool awaited = true;  ///< nothing has been heard of it, and nobody has waited in vain
    std::chrono::steady_clock::time_point until;
  };

  bool MarkDue(const HostQuery& query);
  void Take(const HostQuery& query, const HostAnswer& answer);
  bool AnyAwaited(const std::vector<HostQuery>& queries) const;

  const SteadyClock clock_;
  std::mutex mutex_;
  std::condition_variable answered_;
  std::map<HostQuery, Entry> entries_;
  HostLookups lookups_;
};

}  // namespace slp::client
