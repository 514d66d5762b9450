#include "api/directory_agent_cache.h"

namespace slp::client {

DirectoryAgentCache& DirectoryAgentCache::Instance() {
  static DirectoryAgentCache& cache = *new DirectoryAgentCache;
  return cache;
}

void DirectoryAgentCache::Add(const KnownAgent& agent, std::uint16_t port, TimePoint now, TimePoint until) {
  const std::lock_guard lock(mutex_);
  const Place place(agent.address, port);
  if (agents_.size() == kMostAgents) {
    std::erase_if(agents_, [&](const auto& known) { return known.second.until <= now; });
  }
  if (agents_.size() < kMostAgents || agents_.count(place) > 0) {
    agents_.insert_or_assign(place, Entry{agent, until});
  }
}

std::vector<KnownAgent> DirectoryAgentCache::Agents(std::uint16_t port, TimePoint now) const {
  const std::lock_guard lock(mutex_);
  std::vector<KnownAgent> agents;
  for (const auto& [place, entry] : agents_) {
    if (place.second == port && now < entry.until) {
      agents.push_back(entry.agent);
    }
  }
  return agents;
}

void DirectoryAgentCache::Reject(const asio::ip::address& address, std::uint16_t port, TimePoint until) {
  const std::lock_guard lock(mutex_);
  agents_.erase({address, port});
  if (rejected_.size() >= kMostAgents) {
    rejected_.clear();
  }
  rejected_.insert_or_assign({address, port}, until);
}

bool DirectoryAgentCache::Rejected(const asio::ip::address& address, std::uint16_t port,
                                   TimePoint now) const {
  const std::lock_guard lock(mutex_);
  const auto found = rejected_.find({address, port});
  return found != rejected_.end() && now < found->second;
}

bool DirectoryAgentCache::TakeSearch(std::uint16_t port, TimePoint now, TimePoint next) {
  const std::lock_guard lock(mutex_);
  const auto found = next_search_.find(port);
  if (found != next_search_.end() && now < found->second) {
    return false;
  }
  next_search_.insert_or_assign(port, next);
  return true;
}

}  // namespace slp::client
