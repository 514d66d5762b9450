// The IPv4 interfaces of this host and the choice among them that net.slp.interfaces makes. Selecting is a
// pure function; any thread may call everything here.
#pragma once

#include <asio/ip/address_v4.hpp>
#include <string>
#include <vector>

namespace slp {

/// One address of one interface; an interface with two addresses appears twice.
struct Interface {
  std::string name;  ///< "eth0"; on Windows the friendly name, "Ethernet 2"
  asio::ip::address_v4 address;
  asio::ip::address_v4 netmask;
  bool up = false;
  bool multicast = false;  ///< can send to and join multicast groups
  bool loopback = false;

  bool operator==(const Interface&) const = default;
};

/// The interfaces as they are now, in the operating system's order; empty when it does not tell. Does not
/// block.
std::vector<Interface> EnumerateInterfaces();

struct InterfaceSelection {
  std::vector<Interface> interfaces;
  std::vector<std::string> unknown;  ///< what was wanted and is no interface of this host that is up

  bool operator==(const InterfaceSelection&) const = default;
};

/// Those of `all` that `wanted` names, in its order, each once. An element is a name or an address, compared
/// without regard to case and outer blanks; a name stands for all addresses of that interface. Any address of
/// 127.0.0.0/8 is taken when the host has a loopback interface. An empty `wanted` selects everything that is
/// up and can multicast, and behind it the loopback interface, so that agents of one host find each other
/// without a network.
InterfaceSelection SelectInterfaces(const std::vector<Interface>& all,
                                    const std::vector<std::string>& wanted);

/// Whether `address` belongs to this host: one of `all`, or any of 127.0.0.0/8.
bool IsOwnAddress(const std::vector<Interface>& all, const asio::ip::address_v4& address);

/// Whether `address` lies in the network of one of `all` (loopback included).
bool IsOnOwnNetwork(const std::vector<Interface>& all, const asio::ip::address_v4& address);

}  // namespace slp
