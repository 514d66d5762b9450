// What a request needs of the properties, read once at its beginning. Values; any thread.
#pragma once

#include <asio/ip/address.hpp>
#include <asio/ip/address_v4.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "net/host_lookups.h"
#include "properties/properties.h"

namespace slp::client {

struct RequestSettings {
  /// Waits behind the tries of one request, and the longest time for all of them together.
  struct Waits {
    std::vector<std::chrono::milliseconds> tries;
    std::chrono::milliseconds maximum{0};
  };

  explicit RequestSettings(const Properties& properties);

  std::uint16_t port;
  std::size_t mtu;  ///< longest datagram that is sent
  Waits unicast;
  Waits multicast;
  int multicast_ttl;
  bool broadcast_only;
  asio::ip::address_v4 broadcast_address;
  bool use_ipv6;
  std::vector<std::string> interfaces;  ///< net.slp.interfaces
  std::string scopes;                   ///< net.slp.useScopes as a list, never empty
  int maximum_results;                  ///< the largest integer when there is no limit
  bool watch_process;

  /// How directory agents are found: those of net.slp.DAAddresses, whether others are looked for at all and
  /// searched for by this process itself, and how long what was found counts.
  struct DirectoryAgents {
    std::vector<asio::ip::address> configured;
    std::vector<HostQuery> names;  ///< of those that are configured by name
    bool wanted;
    bool searched;
    std::chrono::seconds interval;
    Waits discovery;
    Waits requests;  ///< behind the datagrams of one request
  };
  DirectoryAgents directory_agents;
};

}  // namespace slp::client
