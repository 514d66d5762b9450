#include "slpd/directory/client_settings.h"

#include "text/host_name.h"
#include "text/ip_address.h"
#include "text/ipv4_address.h"
#include "text/string_list.h"

namespace slp {
namespace {

std::vector<Instant> Waits(const Properties& properties, std::string_view key) {
  std::vector<Instant> waits;
  for (const int wait : properties.GetIntList(key)) {
    waits.emplace_back(wait);
  }
  return waits;
}

}  // namespace

DirectoryClientSettings DirectoryClientSettings::From(const Properties& properties,
                                                      const AgentSettings& agent,
                                                      std::vector<std::string>& problems) {
  DirectoryClientSettings settings;
  settings.ipv6 = properties.GetBool("net.slp.useIPv6");
  for (std::string& address : ListUnion({}, properties.GetStringList("net.slp.DAAddresses"))) {
    if (IsIpv4Address(address) || (settings.ipv6 && ParseIpv6Address(address))) {
      settings.configured.push_back(std::move(address));
    } else if (IsHostName(address)) {
      settings.names.push_back(std::move(address));
    } else {
      problems.push_back("net.slp.DAAddresses names " + address + ", which is no " +
                         (settings.ipv6 ? "IP" : "IPv4") + " address; it is not used");
    }
  }
  settings.active = properties.GetBool("net.slp.activeDADetection");
  settings.passive = properties.GetBool("net.slp.passiveDADetection");
  settings.interval = Seconds(properties.GetInt("net.slp.DAActiveDiscoveryInterval"));
  settings.discovery_waits = Waits(properties, "net.slp.DADiscoveryTimeouts");
  settings.discovery_maximum = Instant(properties.GetInt("net.slp.DADiscoveryMaximumWait"));
  settings.datagram_waits = Waits(properties, "net.slp.datagramTimeouts");
  settings.random_bound = Instant(properties.GetInt("net.slp.randomWaitBound"));
  settings.check_period = Seconds(properties.GetInt("net.slp.staleDACheckPeriod"));
  settings.scopes = agent.scopes;
  settings.language = agent.language;
  settings.mtu = agent.mtu;
  settings.own_addresses = agent.own_addresses;
  return settings;
}

}  // namespace slp
