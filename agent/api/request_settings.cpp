#include "api/request_settings.h"

#include <limits>

#include "net/addresses.h"
#include "text/host_name.h"
#include "text/string_list.h"

namespace slp::client {
namespace {

RequestSettings::Waits ReadWaits(const Properties& properties, std::string_view tries,
                                 std::string_view maximum) {
  RequestSettings::Waits waits;
  for (const int wait : properties.GetIntList(tries)) {
    waits.tries.emplace_back(wait);
  }
  waits.maximum = std::chrono::milliseconds(properties.GetInt(maximum));
  return waits;
}

asio::ip::address_v4 ReadBroadcastAddress(const Properties& properties) {
  return ParseAddress(properties.GetString("net.slp.broadcastAddr"))
      .value_or(asio::ip::address_v4::broadcast());
}

std::string ReadScopes(const Properties& properties) {
  // RFC 2608 section 6: in the absence of configuration the scope is "DEFAULT".
  const std::vector<std::string> scopes = properties.GetStringList("net.slp.useScopes");
  return scopes.empty() ? "DEFAULT" : JoinStringList(scopes);
}

RequestSettings::DirectoryAgents ReadDirectoryAgents(const Properties& properties) {
  RequestSettings::DirectoryAgents agents;
  const bool ipv6 = properties.GetBool("net.slp.useIPv6");
  for (const std::string& text : ListUnion({}, properties.GetStringList("net.slp.DAAddresses"))) {
    if (const auto address = ParseUsableAddress(text, ipv6)) {
      agents.configured.push_back(*address);
    } else if (IsHostName(text)) {
      agents.names.push_back({text, ipv6});
    }
  }
  agents.interval = std::chrono::seconds(properties.GetInt("net.slp.DAActiveDiscoveryInterval"));
  const bool active = properties.GetBool("net.slp.activeDADetection");
  agents.wanted = active || properties.GetBool("net.slp.passiveDADetection");
  agents.searched = active && agents.interval > std::chrono::seconds(0);
  agents.discovery = ReadWaits(properties, "net.slp.DADiscoveryTimeouts", "net.slp.DADiscoveryMaximumWait");
  agents.requests = ReadWaits(properties, "net.slp.datagramTimeouts", "net.slp.unicastMaximumWait");
  return agents;
}

int ReadMaximumResults(const Properties& properties) {
  // RFC 2614 section 2.1.7: positive numbers and -1 are legal.
  const int maximum = properties.GetInt("net.slp.maxResults");
  return maximum > 0 ? maximum : std::numeric_limits<int>::max();
}

}  // namespace

RequestSettings::RequestSettings(const Properties& properties)
    : port(static_cast<std::uint16_t>(properties.GetInt("net.slp.port"))),
      mtu(static_cast<std::size_t>(properties.GetInt("net.slp.MTU"))),
      unicast(ReadWaits(properties, "net.slp.unicastTimeouts", "net.slp.unicastMaximumWait")),
      multicast(ReadWaits(properties, "net.slp.multicastTimeouts", "net.slp.multicastMaximumWait")),
      multicast_ttl(properties.GetInt("net.slp.multicastTTL")),
      broadcast_only(properties.GetBool("net.slp.isBroadcastOnly")),
      broadcast_address(ReadBroadcastAddress(properties)),
      use_ipv6(properties.GetBool("net.slp.useIPv6")),
      interfaces(properties.GetStringList("net.slp.interfaces")),
      scopes(ReadScopes(properties)),
      maximum_results(ReadMaximumResults(properties)),
      watch_process(properties.GetBool("net.slp.watchRegistrationPID")),
      directory_agents(ReadDirectoryAgents(properties)) {}

}  // namespace slp::client
