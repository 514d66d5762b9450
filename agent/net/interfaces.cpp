// Selection of interfaces; the operating system's part stands in posix/ and windows/.
#include "net/interfaces.h"

#include <algorithm>
#include <optional>

#include "net/addresses.h"
#include "text/fold.h"

namespace slp {
namespace {

bool SameBytes(const asio::ip::address& one, const asio::ip::address& other) {
  return one.is_v6() && other.is_v6() && one.to_v6().to_bytes() == other.to_v6().to_bytes();
}

/// Whether `wanted` means `address`; without a zone it means that address of any link.
bool Means(const asio::ip::address& wanted, const asio::ip::address& address) {
  return wanted == address ||
         (wanted.is_v6() && wanted.to_v6().scope_id() == 0 && SameBytes(wanted, address));
}

/// Whether both lie in the network that `netmask` cuts out. Networks of a link are told apart by the link.
bool SameNetwork(const asio::ip::address_v6& one, const asio::ip::address_v6& other,
                 const asio::ip::address_v6& netmask) {
  const auto one_bytes = one.to_bytes();
  const auto other_bytes = other.to_bytes();
  const auto mask = netmask.to_bytes();
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (((one_bytes[i] ^ other_bytes[i]) & mask[i]) != 0) {
      return false;
    }
  }
  return one.scope_id() == other.scope_id();
}

bool InNetworkOf(const Interface& candidate, const asio::ip::address& address) {
  if (candidate.address.is_v4() != address.is_v4() || candidate.netmask.is_unspecified()) {
    return false;
  }
  if (address.is_v6()) {
    return SameNetwork(candidate.address.to_v6(), address.to_v6(), candidate.netmask.to_v6());
  }
  const auto mask = candidate.netmask.to_v4().to_uint();
  return (candidate.address.to_v4().to_uint() & mask) == (address.to_v4().to_uint() & mask);
}

/// What one element of net.slp.interfaces stands for.
std::vector<Interface> Resolve(const std::vector<Interface>& all, const std::string& element) {
  const auto address = ParseAnyAddress(element);
  std::vector<Interface> found;
  for (const Interface& candidate : all) {
    if (candidate.up &&
        (address ? Means(*address, candidate.address) : EqualFolded(candidate.name, element))) {
      found.push_back(candidate);
    }
  }
  if (found.empty() && address && address->is_v4() && address->is_loopback()) {
    // Hosts list 127.0.0.1 alone, yet the whole network is theirs.
    const auto loopback = std::find_if(all.begin(), all.end(), [](const Interface& candidate) {
      return candidate.up && candidate.loopback && candidate.address.is_v4();
    });
    if (loopback != all.end()) {
      found.push_back(*loopback);
      found.back().address = *address;
    }
  }
  return found;
}

void AddOnce(std::vector<Interface>& list, const Interface& addition) {
  if (std::none_of(list.begin(), list.end(),
                   [&](const Interface& present) { return present.address == addition.address; })) {
    list.push_back(addition);
  }
}

}  // namespace

InterfaceSelection SelectInterfaces(const std::vector<Interface>& all,
                                    const std::vector<std::string>& wanted) {
  InterfaceSelection selection;
  for (const std::string& element : wanted) {
    const std::vector<Interface> found = Resolve(all, std::string(Trim(element)));
    if (found.empty()) {
      selection.unknown.push_back(element);
    }
    for (const Interface& addition : found) {
      AddOnce(selection.interfaces, addition);
    }
  }
  if (!wanted.empty()) {
    return selection;
  }
  for (const bool loopback : {false, true}) {
    for (const Interface& candidate : all) {
      // Some systems don't mark the loopback interface as able to multicast although it is.
      if (candidate.up && candidate.loopback == loopback && (candidate.multicast || loopback)) {
        AddOnce(selection.interfaces, candidate);
      }
    }
  }
  return selection;
}

asio::ip::address OnSomeLink(const std::vector<Interface>& all, const asio::ip::address& address) {
  const auto of_link = [](const asio::ip::address& one) {
    return one.is_v6() && one.to_v6().is_link_local();
  };
  if (!of_link(address) || address.to_v6().scope_id() != 0) {
    return address;
  }
  const auto link = std::find_if(all.begin(), all.end(), [&](const Interface& candidate) {
    return candidate.up && of_link(candidate.address);
  });
  return link == all.end() ? address : asio::ip::address_v6(address.to_v6().to_bytes(), link->index);
}

bool IsOwnAddress(const std::vector<Interface>& all, const asio::ip::address& address) {
  return address.is_loopback() || std::any_of(all.begin(), all.end(), [&](const Interface& candidate) {
           return candidate.address == address;
         });
}

bool IsOnOwnNetwork(const std::vector<Interface>& all, const asio::ip::address& address) {
  return IsOwnAddress(all, address) || std::any_of(all.begin(), all.end(), [&](const Interface& candidate) {
           return candidate.up && InNetworkOf(candidate, address);
         });
}

}  // namespace slp
