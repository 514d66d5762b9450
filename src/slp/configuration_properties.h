// Which SLP properties make up a configuration record, in which order they are read, and what stands for one
// that cannot be read. Stateless: any thread may call it.
#pragma once

#include <span>
#include <string>
#include <variant>
#include <vector>

#include "kelsd/CKelSLPClientConfig.h"
#include "kelsd/CKelSLPConfig.h"
#include "kelsd/CKelSLPServiceConfig.h"
#include "kelsd/SResult.h"

namespace kelsd {

/// The values that every configuration begins with. The initial ones stand for what cannot be read.
struct CommonPropertyValues {
  int multicast_ttl = CKelSLPConfig::MULTICASTTTL_DEFAULT;
  int unicast_maximum_wait = CKelSLPConfig::UNICASTMAXIMUMWAIT_DEFAULT_SLP;
  std::vector<int> unicast_timeouts = CKelSLPConfig::UNICASTTIMEOUTS_DEFAULT_SLP();
  int mtu = CKelSLPConfig::MTU_DEFAULT;
  std::string broadcast_addr = CKelSLPConfig::BROADCASTADDR_DEFAULT();
  bool use_dhcp = CKelSLPConfig::USEDHCP_DEFAULT;
  std::vector<std::string> interfaces = CKelSLPConfig::INTERFACES_DEFAULT();
  bool active_da_detection = CKelSLPConfig::ACTIVEDADETECTION_DEFAULT;
  int port = CKelSLPConfig::PORT_DEFAULT;
  bool security_enabled = CKelSLPConfig::SECURITYENABLED_DEFAULT;
  bool use_ipv4 = CKelSLPConfig::USEIPV4_DEFAULT;
  bool use_ipv6 = CKelSLPConfig::USEIPV6_DEFAULT;
  std::string open_slp_version;
};

/// The values of a client configuration, which begins with the library's own, shorter unicast timing.
struct ClientPropertyValues : CommonPropertyValues {
  ClientPropertyValues();

  int max_results = CKelSLPClientConfig::MAXRESULTS_DEFAULT;
  int da_discovery_maximum_wait = CKelSLPClientConfig::DADISCOVERYMAXIMUMWAIT_DEFAULT;
  std::vector<int> da_discovery_timeouts = CKelSLPClientConfig::DADISCOVERYTIMEOUTS_DEFAULT();
  int multicast_maximum_wait = CKelSLPClientConfig::MULTICASTMAXIMUMWAIT_DEFAULT;
  std::vector<int> multicast_timeouts = CKelSLPClientConfig::MULTICASTTIMEOUTS_DEFAULT();
};

/// The values of a service configuration; the initial ones are the SLP standard's.
struct ServicePropertyValues : CommonPropertyValues {
  bool is_da = CKelSLPServiceConfig::ISDA_DEFAULT;
  int da_heart_beat = CKelSLPServiceConfig::DAHEARTBEAT_DEFAULT;
  int stale_da_check_period = CKelSLPServiceConfig::STALEDACHECKPERIOD_DEFAULT;
  std::vector<std::string> use_scopes = CKelSLPServiceConfig::USESCOPES_DEFAULT();
  std::vector<std::string> da_addresses = CKelSLPServiceConfig::DAADDRESSES_DEFAULT();
  bool watch_registration_pid = CKelSLPServiceConfig::WATCHREGISTRATIONPID_DEFAULT;
  bool index_srvtype = CKelSLPServiceConfig::INDEXSRVTYPE_DEFAULT;
  std::vector<std::string> indexed_attributes = CKelSLPServiceConfig::INDEXEDATTRIBUTES_DEFAULT();
  bool trace_da_traffic = CKelSLPServiceConfig::TRACEDATRAFFIC_DEFAULT;
  bool trace_reg = CKelSLPServiceConfig::TRACEREG_DEFAULT;
  bool trace_drop = CKelSLPServiceConfig::TRACEDROP_DEFAULT;
  bool trace_msg = CKelSLPServiceConfig::TRACEMSG_DEFAULT;
  bool append_log = CKelSLPServiceConfig::APPENDLOG_DEFAULT;
  bool is_broadcast_only = CKelSLPServiceConfig::ISBROADCASTONLY_DEFAULT;
  bool passive_da_detection = CKelSLPServiceConfig::PASSIVEDADETECTION_DEFAULT;
  int da_active_discovery_interval = CKelSLPServiceConfig::DAACTIVEDISCOVERYINTERVAL_DEFAULT;
  bool check_source_addr = CKelSLPServiceConfig::CHECKSOURCEADDR_DEFAULT;
};

/// One property of a record: what to read, and where it goes. The kind of the member tells how it is read; a
/// list of integers is a list of timeouts.
template <typename Values>
struct ConfigurationProperty {
  CKelSLPConfig::EProperty property;
  std::variant<int Values::*, bool Values::*, std::string Values::*, std::vector<std::string> Values::*,
               std::vector<int> Values::*>
      member;
};

/// The properties of a record in reading order.
std::span<const ConfigurationProperty<ClientPropertyValues>> ClientProperties();
std::span<const ConfigurationProperty<ServicePropertyValues>> ServiceProperties();

/// The records made of such values. What the record rejects is appended to `problems` and holds a default.
CKelSLPClientConfig MakeClientConfig(const ClientPropertyValues& values, std::vector<SResult>& problems);
CKelSLPServiceConfig MakeServiceConfig(const ServicePropertyValues& values, std::vector<SResult>& problems);

}  // namespace kelsd
