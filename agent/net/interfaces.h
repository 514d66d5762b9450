// The addresses of this host's interfaces and the choice among them that net.slp.interfaces makes. Selecting
// is a pure function; any thread may call everything here.
#pragma once

#include <asio/ip/address.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace slp {

/// One address of one interface; an interface with two addresses appears twice.
struct Interface {
  std::string name;           ///< "eth0"; on Windows the friendly name, "Ethernet 2"
  asio::ip::address address;  ///< with its zone when it is of a link
  asio::ip::address netmask;  ///< of the same family
  bool up = false;
  bool multicast = false;  ///< can send to and join multicast groups
  bool loopback = false;
  /// Tells it from one that had its name and addresses before; sockets of IPv6 name it by this. 0 only with
  /// an IPv4 address, where the system does not tell.
  std::uint32_t index = 0;

  bool operator==(const Interface&) const = default;
};

/// The interfaces as they are now, in the operating system's order, with those addresses of IPv6 only that
/// are asked for; none when it does not tell, for want of descriptors perhaps. Does not block.
std::optional<std::vector<Interface>> EnumerateInterfaces(bool with_ipv6 = false);

struct InterfaceSelection {
  std::vector<Interface> interfaces;
  std::vector<std::string> unknown;  ///< what was wanted and is no interface of this host that is up

  bool operator==(const InterfaceSelection&) const = default;
};

/// Those of `all` that `wanted` names, in its order, each once. An element is a name or an address, compared
/// without regard to case and outer blanks; a name stands for all addresses of that interface, and an address
/// of a link without a zone for every interface that has it. Any address of
/// 127.0.0.0/8 is taken when the host has a loopback interface. An empty `wanted` selects everything that is
/// up and can multicast, and behind it the loopback interface, so that agents of one host find each other
/// without a network.
InterfaceSelection SelectInterfaces(const std::vector<Interface>& all,
                                    const std::vector<std::string>& wanted);

/// An address of a link that comes without its zone, on the first interface of `all` that has such addresses;
/// any other address as it is.
asio::ip::address OnSomeLink(const std::vector<Interface>& all, const asio::ip::address& address);

/// Whether `address` belongs to this host: one of `all`, any of 127.0.0.0/8, or ::1.
bool IsOwnAddress(const std::vector<Interface>& all, const asio::ip::address& address);

/// Whether `address` lies in the network of one of `all` (loopback included).
bool IsOnOwnNetwork(const std::vector<Interface>& all, const asio::ip::address& address);

}  // namespace slp
