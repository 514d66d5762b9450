// The reading order of the configuration records and their making.
#include "slp/configuration_properties.h"

#include <algorithm>
#include <array>

namespace kelsd {

namespace {

/// The rows that both tables begin with.
template <typename Values>
constexpr std::array<ConfigurationProperty<Values>, 13> kCommonProperties{{
    {CKelSLPConfig::PROP_MULTICASTTTL, &Values::multicast_ttl},
    {CKelSLPConfig::PROP_UNICASTMAXIMUMWAIT, &Values::unicast_maximum_wait},
    {CKelSLPConfig::PROP_UNICASTTIMEOUTS, &Values::unicast_timeouts},
    {CKelSLPConfig::PROP_MTU, &Values::mtu},
    {CKelSLPConfig::PROP_BROADCASTADDR, &Values::broadcast_addr},
    {CKelSLPConfig::PROP_USEDHCP, &Values::use_dhcp},
    {CKelSLPConfig::PROP_INTERFACES, &Values::interfaces},
    {CKelSLPConfig::PROP_ACTIVEDADETECTION, &Values::active_da_detection},
    {CKelSLPConfig::PROP_PORT, &Values::port},
    {CKelSLPConfig::PROP_SECURITYENABLED, &Values::security_enabled},
    {CKelSLPConfig::PROP_USEIPV4, &Values::use_ipv4},
    {CKelSLPConfig::PROP_USEIPV6, &Values::use_ipv6},
    {CKelSLPConfig::PROP_OPENSLPVERSION, &Values::open_slp_version},
}};

constexpr std::array<ConfigurationProperty<ClientPropertyValues>, 5> kClientProperties{{
    {CKelSLPConfig::PROP_MAXRESULTS, &ClientPropertyValues::max_results},
    {CKelSLPConfig::PROP_DADISCOVERYMAXIMUMWAIT, &ClientPropertyValues::da_discovery_maximum_wait},
    {CKelSLPConfig::PROP_DADISCOVERYTIMEOUTS, &ClientPropertyValues::da_discovery_timeouts},
    {CKelSLPConfig::PROP_MULTICASTMAXIMUMWAIT, &ClientPropertyValues::multicast_maximum_wait},
    {CKelSLPConfig::PROP_MULTICASTTIMEOUTS, &ClientPropertyValues::multicast_timeouts},
}};

constexpr std::array<ConfigurationProperty<ServicePropertyValues>, 17> kServiceProperties{{
    {CKelSLPConfig::PROP_ISDA, &ServicePropertyValues::is_da},
    {CKelSLPConfig::PROP_DAHEARTBEAT, &ServicePropertyValues::da_heart_beat},
    {CKelSLPConfig::PROP_STALEDACHECKPERIOD, &ServicePropertyValues::stale_da_check_period},
    {CKelSLPConfig::PROP_USESCOPES, &ServicePropertyValues::use_scopes},
    {CKelSLPConfig::PROP_DAADDRESSES, &ServicePropertyValues::da_addresses},
    {CKelSLPConfig::PROP_WATCHREGISTRATIONPID, &ServicePropertyValues::watch_registration_pid},
    {CKelSLPConfig::PROP_INDEXSRVTYPE, &ServicePropertyValues::index_srvtype},
    {CKelSLPConfig::PROP_INDEXEDATTRIBUTES, &ServicePropertyValues::indexed_attributes},
    {CKelSLPConfig::PROP_TRACEDATRAFFIC, &ServicePropertyValues::trace_da_traffic},
    {CKelSLPConfig::PROP_TRACEREG, &ServicePropertyValues::trace_reg},
    {CKelSLPConfig::PROP_TRACEDROP, &ServicePropertyValues::trace_drop},
    {CKelSLPConfig::PROP_TRACEMSG, &ServicePropertyValues::trace_msg},
    {CKelSLPConfig::PROP_APPENDLOG, &ServicePropertyValues::append_log},
    {CKelSLPConfig::PROP_ISBROADCASTONLY, &ServicePropertyValues::is_broadcast_only},
    {CKelSLPConfig::PROP_PASSIVEDADETECTION, &ServicePropertyValues::passive_da_detection},
    {CKelSLPConfig::PROP_DAACTIVEDISCOVERYINTERVAL, &ServicePropertyValues::da_active_discovery_interval},
    {CKelSLPConfig::PROP_CHECKSOURCEADDR, &ServicePropertyValues::check_source_addr},
}};

template <typename Row, std::size_t kFirstSize, std::size_t kSecondSize>
constexpr std::array<Row, kFirstSize + kSecondSize> Concatenate(const std::array<Row, kFirstSize>& first,
                                                                const std::array<Row, kSecondSize>& second) {
  std::array<Row, kFirstSize + kSecondSize> all{};
  std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), all.begin()));
  return all;
}

constexpr auto kAllClientProperties = Concatenate(kCommonProperties<ClientPropertyValues>, kClientProperties);
constexpr auto kAllServiceProperties =
    Concatenate(kCommonProperties<ServicePropertyValues>, kServiceProperties);

}  // namespace

ClientPropertyValues::ClientPropertyValues() {
  unicast_maximum_wait = CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT;
  unicast_timeouts = CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT();
}

std::span<const ConfigurationProperty<ClientPropertyValues>> ClientProperties() {
  return kAllClientProperties;
}

std::span<const ConfigurationProperty<ServicePropertyValues>> ServiceProperties() {
  return kAllServiceProperties;
}

CKelSLPClientConfig MakeClientConfig(const ClientPropertyValues& values, std::vector<SResult>& problems) {
  return {values.multicast_ttl,
          values.unicast_maximum_wait,
          values.unicast_timeouts,
          values.mtu,
          values.broadcast_addr,
          values.use_dhcp,
          values.interfaces,
          values.active_da_detection,
          values.port,
          values.security_enabled,
          values.use_ipv4,
          values.use_ipv6,
          values.open_slp_version,
          values.max_results,
          values.da_discovery_maximum_wait,
          values.da_discovery_timeouts,
          values.multicast_maximum_wait,
          values.multicast_timeouts,
          problems};
}

CKelSLPServiceConfig MakeServiceConfig(const ServicePropertyValues& values, std::vector<SResult>& problems) {
  return {values.multicast_ttl,
          values.unicast_maximum_wait,
          values.unicast_timeouts,
          values.mtu,
          values.broadcast_addr,
          values.use_dhcp,
          values.interfaces,
          values.active_da_detection,
          values.port,
          values.security_enabled,
          values.use_ipv4,
          values.use_ipv6,
          values.open_slp_version,
          values.is_da,
          values.da_heart_beat,
          values.stale_da_check_period,
          values.use_scopes,
          values.da_addresses,
          values.watch_registration_pid,
          values.index_srvtype,
          values.indexed_attributes,
          values.trace_da_traffic,
          values.trace_reg,
          values.trace_drop,
          values.trace_msg,
          values.append_log,
          values.is_broadcast_only,
          values.passive_da_detection,
          values.da_active_discovery_interval,
          values.check_source_addr,
          problems};
}

}  // namespace kelsd
