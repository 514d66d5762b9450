#include "slpd/server/sender_origin.h"

#include "net/addresses.h"

namespace slp {
namespace {

bool MayBeForged(const asio::ip::address& own_address, Transport transport) {
  return transport != Transport::kTcp && own_address.is_v6() && !own_address.is_loopback();
}

}  // namespace

RequestOrigin OriginOf(const Sender& sender, const std::vector<Interface>& interfaces,
                       const NetworkList& trusted_networks) {
  RequestOrigin origin;
  const asio::ip::address address = Plain(sender.address);
  const bool own_address = IsOwnAddress(interfaces, address);
  origin.address = address.to_string();
  origin.local_address = sender.local.is_unspecified() ? "" : sender.local.to_string();
  origin.transport = sender.transport;
  origin.own_host = own_address && !MayBeForged(address, sender.transport);
  origin.own_network = own_address || IsOnOwnNetwork(interfaces, address);
  origin.beyond_link = address.is_v6() && !own_address && !sender.to_link && !address.to_v6().is_link_local();
  origin.trusted_network = trusted_networks.Contains(sender.address);
  return origin;
}

}  // namespace slp
