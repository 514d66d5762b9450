// The settings that the daemon's logic needs, taken from the properties. Values; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "properties/properties.h"
#include "slpd/seconds.h"

namespace slp {

struct AgentSettings {
  std::vector<std::string> scopes = {"DEFAULT"};  ///< net.slp.useScopes, never empty
  std::string language = "en";                    ///< net.slp.locale
  std::size_t mtu = 1400;        ///< net.slp.MTU: the largest UDP reply, without UDP and IP headers
  std::size_t reply_rate = 500;  ///< net.slp.replyRate: whole UDP replies a second to one sender
  std::size_t registrations_per_host = 10'000;  ///< net.slp.maxRegistrationsPerHost: of one other host
  std::size_t bytes_per_host = std::size_t{64} * 1024 * 1024;  ///< net.slp.maxBytesPerHost: of one other host
  bool watch_registration_pid = true;                          ///< net.slp.watchRegistrationPID
  std::string service_agent_attributes;  ///< net.slp.SAAttributes; empty when the property does not parse
  std::string registration_file;         ///< net.slp.serializedRegURL without "file://"; empty: none

  bool directory_agent = false;            ///< net.slp.isDA
  std::string directory_agent_attributes;  ///< net.slp.DAAttributes; empty when the property does not parse
  Seconds min_refresh_interval{0};         ///< min-refresh-interval of these attributes; 0: none
  Seconds heartbeat{10800};                ///< net.slp.DAHeartBeat
  bool check_source_address = true;        ///< net.slp.checkSourceAddr

  bool trace_messages = false;
  bool trace_drops = false;
  bool trace_registrations = false;

  /// What the comparisons of one request may cost (see Effort): enough to compare a hundred thousand services
  /// with some fifteen short terms each. It is used up in 0.2 to 0.3 seconds of a processor by most requests,
  /// in 0.7 by values that are made for it. No property.
  std::size_t request_effort = std::size_t{64} * 1024 * 1024;

  /// Numeric addresses of the own interfaces: previous responder lists are compared with them and the first
  /// one stands in the URL of advertisements. No property: whoever owns the sockets fills it in.
  std::vector<std::string> own_addresses;

  /// Since when, in seconds since 1970, this directory agent has kept what was registered with it. No
  /// property: whoever owns the clock fills it in.
  std::uint32_t boot_timestamp = 0;

  /// From when on other hosts hear of this directory agent: not in the second that is its boot timestamp, so
  /// that no other start of it, before or after, has told the same one (RFC 2608 section 12.1). No property:
  /// whoever owns the clock fills it in.
  Instant announced_from{0};

  /// Everything but own_addresses, boot_timestamp and announced_from.
  static AgentSettings From(const Properties& properties);
};

}  // namespace slp
