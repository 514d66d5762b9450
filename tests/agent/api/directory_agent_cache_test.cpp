#include "api/directory_agent_cache.h"

#include <gtest/gtest.h>

#include <asio/ip/address_v4.hpp>

namespace slp::client {
namespace {

constexpr std::uint16_t kPort = 427;

DirectoryAgentCache::TimePoint At(int second) {
  return DirectoryAgentCache::TimePoint(std::chrono::seconds(second));
}

KnownAgent Numbered(std::size_t number) {
  return {asio::ip::address_v4(static_cast<std::uint32_t>(0x0A000000U + number)), {"DEFAULT"}};
}

TEST(DirectoryAgentCache, HasRoomForOthersOnceTheOnesBeforeCountNoMore) {
  DirectoryAgentCache cache;
  for (std::size_t number = 0; number < DirectoryAgentCache::kMostAgents; ++number) {
    cache.Add(Numbered(number), kPort, At(0), At(10));
  }
  const KnownAgent another = Numbered(1000);
  cache.Add(another, kPort, At(9), At(20));
  EXPECT_EQ(cache.Agents(kPort, At(9)).size(), DirectoryAgentCache::kMostAgents);
  cache.Add(another, kPort, At(10), At(20));
  EXPECT_EQ(cache.Agents(kPort, At(10)), std::vector<KnownAgent>{another});
}

}  // namespace
}  // namespace slp::client
