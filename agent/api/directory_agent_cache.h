// What this process knows of directory agents, so that not every search looks for them. Any thread.
#pragma once

#include <asio/ip/udp.hpp>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace slp::client {

/// A directory agent, the scopes that it is known to serve, and the refresh interval that it has advertised;
/// 0 without one, none where no advertisement has been seen.
struct KnownAgent {
  asio::ip::address address;
  std::vector<std::string> scopes;
  std::optional<std::chrono::seconds> refresh_interval = {};
  bool operator==(const KnownAgent&) const = default;
};

class DirectoryAgentCache {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// More agents are not kept at a time; who invents some cannot fill the memory.
  static constexpr std::size_t kMostAgents = 64;

  DirectoryAgentCache() = default;
  DirectoryAgentCache(const DirectoryAgentCache&) = delete;
  DirectoryAgentCache& operator=(const DirectoryAgentCache&) = delete;

  /// The one of this process. Never destroyed, so that it serves threads that outlive main.
  static DirectoryAgentCache& Instance();

  /// Known from now on until then.
  void Add(const KnownAgent& agent, std::uint16_t port, TimePoint now, TimePoint until);

  /// Those that were added and not rejected, by port: processes may use more than one.
  std::vector<KnownAgent> Agents(std::uint16_t port, TimePoint now) const;

  /// What listens there, or doesn't, is of no use until then.
  void Reject(const asio::ip::address& address, std::uint16_t port, TimePoint until);
  bool Rejected(const asio::ip::address& address, std::uint16_t port, TimePoint now) const;

  /// Whether a search is due; then it is not due again until `next`.
  [[nodiscard]] bool TakeSearch(std::uint16_t port, TimePoint now, TimePoint next);

 private:
  using Place = std::pair<asio::ip::address, std::uint16_t>;
  struct Entry {
    KnownAgent agent;
    TimePoint until;
  };

  mutable std::mutex mutex_;
  std::map<Place, Entry> agents_;
  std::map<Place, TimePoint> rejected_;
  std::map<std::uint16_t, TimePoint> next_search_;
};

}  // namespace slp::client
