// The settings with which the daemon finds directory agents and registers with them. Values; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "properties/properties.h"
#include "slpd/agent_settings.h"
#include "slpd/seconds.h"

namespace slp {

struct DirectoryClientSettings {
  std::vector<std::string> configured;   ///< net.slp.DAAddresses, numeric
  std::vector<std::string> names;        ///< net.slp.DAAddresses, the names of hosts
  bool ipv6 = false;                     ///< net.slp.useIPv6
  bool active = true;                    ///< net.slp.activeDADetection
  bool passive = true;                   ///< net.slp.passiveDADetection
  Seconds interval{900};                 ///< net.slp.DAActiveDiscoveryInterval; 0: no active discovery
  std::vector<Instant> discovery_waits;  ///< net.slp.DADiscoveryTimeouts
  Instant discovery_maximum{5000};       ///< net.slp.DADiscoveryMaximumWait
  std::vector<Instant> datagram_waits;   ///< net.slp.datagramTimeouts
  Instant random_bound{1000};            ///< net.slp.randomWaitBound
  Seconds check_period{0};               ///< net.slp.staleDACheckPeriod; 0: never
  std::vector<std::string> scopes = {"DEFAULT"};
  std::string language = "en";
  std::size_t mtu = 1400;
  std::vector<std::string> own_addresses;

  /// `agent` is complete, with its own addresses. What net.slp.DAAddresses names that is neither a host's
  /// name nor an IPv4 address, or with net.slp.useIPv6 an IP address, is told in `problems` and left out.
  static DirectoryClientSettings From(const Properties& properties, const AgentSettings& agent,
                                      std::vector<std::string>& problems);

  bool operator==(const DirectoryClientSettings&) const = default;
};

}  // namespace slp
