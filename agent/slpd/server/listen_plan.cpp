#include "slpd/server/listen_plan.h"

#include <algorithm>

namespace slp {
namespace {

bool IsLoopback(const Interface& entry) {
  return entry.loopback || entry.address.is_loopback();
}

/// Whether another one of the selected addresses answers the groups of IPv6 for the interface of `entry`.
bool StandsBehind(const Interface& entry, const std::vector<Interface>& selected) {
  const auto beyond_link = [](const Interface& one) { return !one.address.to_v6().is_link_local(); };
  const auto same_interface = [&](const Interface& one) {
    return one.address.is_v6() && one.index == entry.index;
  };
  const auto first = std::find_if(selected.begin(), selected.end(), [&](const Interface& one) {
    return same_interface(one) && beyond_link(one);
  });
  const auto chosen =
      first != selected.end() ? first : std::find_if(selected.begin(), selected.end(), same_interface);
  return chosen->address != entry.address;
}

}  // namespace

ListenPlan MakeListenPlan(const Properties& properties, const std::vector<Interface>& all,
                          std::vector<std::string>& problems) {
  ListenPlan plan;
  plan.port = static_cast<std::uint16_t>(properties.GetInt("net.slp.port"));
  plan.multicast_hops = properties.GetInt("net.slp.multicastTTL");

  const InterfaceSelection selection = SelectInterfaces(all, properties.GetStringList("net.slp.interfaces"));
  for (const Interface& entry : selection.interfaces) {
    const bool group = entry.address.is_v4() || !StandsBehind(entry, selection.interfaces);
    plan.places.push_back({entry.address, entry.name, group, entry.index, entry.netmask});
  }
  for (const std::string& unknown : selection.unknown) {
    problems.push_back("net.slp.interfaces names " + unknown +
                       ", which is no address or interface of this host that is up; it is not served");
  }

  if (std::none_of(selection.interfaces.begin(), selection.interfaces.end(), IsLoopback)) {
    plan.places.push_back({asio::ip::address_v4::loopback(), "loopback", false});
    const auto ipv6 = std::find_if(all.begin(), all.end(), [](const Interface& entry) {
      return entry.up && entry.address == asio::ip::address_v6::loopback();
    });
    if (ipv6 != all.end()) {
      plan.places.push_back({ipv6->address, "loopback", false, ipv6->index});
    }
  }
  if (std::any_of(selection.interfaces.begin(), selection.interfaces.end(),
                  [](const Interface& entry) { return entry.address.is_v4() && !IsLoopback(entry); })) {
    asio::error_code error;
    plan.broadcast = asio::ip::make_address(properties.GetString("net.slp.broadcastAddr"), error);
    if (error) {
      problems.push_back("net.slp.broadcastAddr is no address: " +
                         properties.GetString("net.slp.broadcastAddr"));
    }
  }
  return plan;
}

}  // namespace slp
