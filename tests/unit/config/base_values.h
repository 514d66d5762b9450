// The values of a record of common settings as one comparable and printable whole.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "kelsd/CKelSLPConfig.h"

namespace kelsd {

using Deviations = std::map<CKelSLPConfig::EProperty, std::string>;

/// Accepted values of which none is a default and no two of a kind are equal.
struct BaseValues {
  int multicast_ttl = 7;
  int unicast_maximum_wait = 3000;
  std::vector<int> unicast_timeouts = {200, 300};
  int mtu = 900;
  std::string broadcast_addr = "10.0.0.255";
  bool use_dhcp = false;
  std::vector<std::string> interfaces = {"ETH0", "ETH1"};
  bool active_da_detection = false;
  int port = 1427;
  bool security_enabled = true;
  bool use_ipv4 = false;
  bool use_ipv6 = true;
  std::string open_slp_version = "1.2.3";

  /// What `Clear` gives, with the version that the library requires.
  static BaseValues Cleared() {
    BaseValues values;
    values.multicast_ttl = 255;
    values.unicast_maximum_wait = 4000;
    values.unicast_timeouts = {500, 750, 1100, 1600};
    values.mtu = 1400;
    values.broadcast_addr = "255.255.255.255";
    values.use_dhcp = true;
    values.interfaces = {};
    values.active_da_detection = true;
    values.port = 427;
    values.security_enabled = false;
    values.use_ipv4 = true;
    values.use_ipv6 = false;
    values.open_slp_version = "2.0.0";
    return values;
  }

  auto Arguments() const {
    return std::make_tuple(multicast_ttl, unicast_maximum_wait, unicast_timeouts, mtu, broadcast_addr,
                           use_dhcp, interfaces, active_da_detection, port, security_enabled, use_ipv4,
                           use_ipv6, open_slp_version);
  }
};

/// What the getters of the common settings tell, in the order of `BaseValues::Arguments`.
inline auto Read(const CKelSLPConfig& config) {
  return std::make_tuple(config.GetMulticastTTL(), config.GetUnicastMaximumWait(),
                         config.GetUnicastTimeouts(), config.GetMTU(), config.GetBroadcastAddr(),
                         config.GetUseDHCP(), config.GetInterfaces(), config.GetActiveDADetection(),
                         config.GetPPort(), config.GetSecurityEnabled(), config.GetUseIPv4(),
                         config.GetUseIPv6(), config.GetOpenSLPVersion());
}

/// Calls the long constructor of `Config` with `arguments` and `problems`.
template <typename Config, typename Arguments>
Config Make(const Arguments& arguments, std::vector<SResult>& problems) {
  return std::apply([&problems](const auto&... values) { return Config(values..., problems); }, arguments);
}

/// Every common setting that `EqualTo` compares: how to change it, and whether a setter exists for it.
template <typename Values>
struct Change {
  std::string name;
  std::function<void(Values&)> apply;
  bool editable;
};

template <typename Values>
std::vector<Change<Values>> BaseChanges() {
  return {
      {"multicast TTL", [](Values& v) { ++v.multicast_ttl; }, true},
      {"unicast maximum wait", [](Values& v) { ++v.unicast_maximum_wait; }, true},
      {"a unicast timeout", [](Values& v) { ++v.unicast_timeouts.back(); }, true},
      {"number of unicast timeouts", [](Values& v) { v.unicast_timeouts.push_back(400); }, true},
      {"MTU", [](Values& v) { ++v.mtu; }, true},
      {"broadcast address", [](Values& v) { v.broadcast_addr += "0"; }, true},
      {"use DHCP", [](Values& v) { v.use_dhcp = !v.use_dhcp; }, true},
      {"an interface", [](Values& v) { v.interfaces.back() = "ETH2"; }, true},
      {"order of interfaces",
       [](Values& v) {
         v.interfaces = {"ETH1", "ETH0"};
       },
       true},
      {"number of interfaces", [](Values& v) { v.interfaces.pop_back(); }, true},
      {"active DA detection", [](Values& v) { v.active_da_detection = !v.active_da_detection; }, false},
      {"port", [](Values& v) { ++v.port; }, false},
      {"security", [](Values& v) { v.security_enabled = !v.security_enabled; }, false},
      {"use IPv4", [](Values& v) { v.use_ipv4 = !v.use_ipv4; }, false},
      {"use IPv6", [](Values& v) { v.use_ipv6 = !v.use_ipv6; }, false},
  };
}

/// Compares a record with copies of which each differs in one setting, in both directions.
template <typename Config, typename Values>
std::vector<std::string> WrongComparisons(const std::vector<Change<Values>>& changes) {
  std::vector<SResult> problems;
  const Config config = Make<Config>(Values().Arguments(), problems);
  std::vector<std::string> wrong;
  for (const auto& change : changes) {
    Values values;
    change.apply(values);
    const Config other = Make<Config>(values.Arguments(), problems);
    if (config.EqualTo(other) || other.EqualTo(config)) {
      wrong.push_back("EqualTo: " + change.name);
    }
    if (config.EditableEqualTo(other) == change.editable ||
        other.EditableEqualTo(config) == change.editable) {
      wrong.push_back("EditableEqualTo: " + change.name);
    }
  }
  Values same;
  same.open_slp_version = "9.9";
  const Config twin = Make<Config>(same.Arguments(), problems);
  if (!config.EqualTo(twin) || !config.EditableEqualTo(twin)) {
    wrong.push_back("OpenSLP version");
  }
  for (const SResult& problem : problems) {
    wrong.push_back("refused: " + problem.ToString());
  }
  return wrong;
}

}  // namespace kelsd
