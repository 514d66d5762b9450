#include "slpd/server/listen_plan.h"

#include <algorithm>

namespace slp {
namespace {

bool IsLoopback(const Interface& entry) {
  return entry.loopback || entry.address.is_loopback();
}

}  // namespace

ListenPlan MakeListenPlan(const Properties& properties, const std::vector<Interface>& all,
                          std::vector<std::string>& problems) {
  ListenPlan plan;
  plan.port = static_cast<std::uint16_t>(properties.GetInt("net.slp.port"));
  plan.multicast_hops = properties.GetInt("net.slp.multicastTTL");

  const InterfaceSelection selection = SelectInterfaces(all, properties.GetStringList("net.slp.interfaces"));
  for (const Interface& entry : selection.interfaces) {
    plan.places.push_back({entry.address, entry.name, true});
  }
  for (const std::string& unknown : selection.unknown) {
    problems.push_back("net.slp.interfaces names " + unknown +
                       ", which is no address or interface of this host that is up; it is not served");
  }

  if (std::none_of(selection.interfaces.begin(), selection.interfaces.end(), IsLoopback)) {
    plan.places.push_back({asio::ip::address_v4::loopback(), "loopback", false});
  }
  if (!std::all_of(selection.interfaces.begin(), selection.interfaces.end(), IsLoopback)) {
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
